#include "DesktopUser.h"
#include "PaintedPictures.h"
#include "TestSupport.h"

#include <NyBookProjectFile.h>
#include <NyDirectoryConfig.h>
#include <NyFotoListRegistry.h>
#include <NyProgramConfig.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace TestSupport;

/**
 * A proposal that the builder has made is made one's own, by clicks and keys on a display with a window manager: other title, one
 * photo less, one photo replaced, saved, exported, and brought back after a crash. Pictures of all steps are kept.
 */
class tst_BookEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void fromTheProposalToThePdf();
    void cleanup();

private:
    using Thing = DesktopUser::Thing;

    static QStringList photosOf(const NyBookProject &project)
    {
        QStringList names;
        for (const NyBookPage &page : project.pages) {
            for (const NyPlacedFoto &foto : page.photos)
                names.append(foto.url.fileName());
        }
        return names;
    }
    static DesktopUser::Condition text(const QString &part)
    {
        return [part](const Thing &thing) { return thing.name.contains(part) || thing.description.contains(part); };
    }
    static DesktopUser::Condition photo(const QString &name)
    {
        return [name](const Thing &thing) { return thing.role == QStringLiteral("graphic") && thing.name.startsWith(name); };
    }
    /** A window of the main program whose title begins so. */
    static DesktopUser::Condition window(const QString &title)
    {
        return [title](const Thing &thing) { return thing.role == QStringLiteral("frame") && thing.name.startsWith(title); };
    }
    void start(const QStringList &arguments);
    NyBookProject stored() const { return NyBookProjectFile::load(QFileInfo(m_project)).project.value_or(NyBookProject()); }
    /** Of the edits that are not saved; empty if there are none. */
    static QString keptTitle()
    {
        const QFileInfoList files
            = QDir(NyDirectoryConfig::instance().recoveryFolder()).entryInfoList({QStringLiteral("*.nqp")}, QDir::Files);
        return files.isEmpty() ? QString() : NyBookProjectFile::load(files.constFirst()).project.value_or(NyBookProject()).title;
    }
    static bool type(const QString &text)
    {
        return QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), text})
            == 0;
    }

    QTemporaryDir m_folder;
    QString m_project;
    std::unique_ptr<DesktopUser> m_user;
    std::unique_ptr<QProcess> m_program;
};

void tst_BookEditing::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(!qEnvironmentVariableIsEmpty("DISPLAY"));
    NyFotoList fotos;
    for (int i = 0; i < 9; ++i) {
        const QString path = m_folder.filePath(QStringLiteral("Ostsee/foto%1.jpg").arg(i));
        const QDateTime time(QDate(2026, 7, 11 + i / 3), QTime(9 + i, 10 * i));
        QVERIFY(PaintedPictures::write(path, PaintedPictures::painted(i % 3 == 0 ? QSize(900, 1200) : QSize(1600, 1200), i + 1), {time}));
        fotos.append(NyFoto(QUrl::fromLocalFile(path)));
    }
    QVERIFY(PaintedPictures::write(m_folder.filePath(QStringLiteral("other.jpg")), PaintedPictures::painted({1500, 1000}, 99)));
    NyFotoListRegistry::instance().setFotosForBookProposal(fotos);
    const QDir proposals(NyDirectoryConfig::instance().bookProposalFolder().absolutePath());
    QVERIFY(proposals.mkpath(QStringLiteral(".")));
    m_project = proposals.filePath(QStringLiteral("Produktvorschlag.nqp"));
    QProcess builder;
    builder.setProcessChannelMode(QProcess::ForwardedChannels);
    builder.start(QStringLiteral(ALBUMA_EXECUTABLE),
        {QStringLiteral("--programmode"), QStringLiteral("b"), QStringLiteral("--proposalTargetPath"), m_project});
    QVERIFY(builder.waitForFinished(60000));
    QCOMPARE(builder.exitCode(), 0);
}

void tst_BookEditing::init()
{
    m_user = std::make_unique<DesktopUser>(QStringLiteral(NY_SCREENSHOT_DIR));
    QVERIFY(m_user->sitDown());
}

void tst_BookEditing::cleanup()
{
    if (m_program && m_program->state() != QProcess::NotRunning) {
        m_program->kill();
        m_program->waitForFinished(30000);
    }
    m_program.reset();
    m_user.reset();
}

void tst_BookEditing::start(const QStringList &arguments)
{
    m_program = std::make_unique<QProcess>();
    m_program->setProcessChannelMode(QProcess::ForwardedChannels);
    m_program->start(QStringLiteral(ALBUMA_EXECUTABLE), arguments);
    QVERIFY(m_program->waitForStarted());
}

void tst_BookEditing::fromTheProposalToThePdf()
{
    const QString button = QStringLiteral("push button");
    const NyBookProject former = stored();
    const QStringList formerPhotos = photosOf(former);
    QVERIFY(formerPhotos.size() >= 4);

    start({m_project});
    QVERIFY(m_user->waitFor(window(former.title)));
    QVERIFY(m_user->waitFor(button, QStringLiteral("Weiter  ›")));
    m_user->look(QStringLiteral("cover"));

    // Another title, typed where it stands.
    QVERIFY(DesktopUser::key(QStringLiteral("F2")));
    QVERIFY(type(QStringLiteral("Ostsee 2026")));
    m_user->look(QStringLiteral("title"));
    QVERIFY(DesktopUser::key(QStringLiteral("Return")));
    QVERIFY(m_user->waitFor(window(QStringLiteral("Ostsee 2026"))));

    // One photo less, once more back, and gone.
    QVERIFY(m_user->click(button, QStringLiteral("Weiter  ›")));
    const QString gone = former.pages.constFirst().photos.constFirst().url.fileName();
    QVERIFY(m_user->clickOn(photo(gone)));
    m_user->look(QStringLiteral("selected"));
    QVERIFY(DesktopUser::key(QStringLiteral("Delete")));
    QVERIFY(m_user->waitUntilGone(photo(gone)));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+z")));
    QVERIFY(m_user->waitFor(photo(gone)));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+shift+z")));
    QVERIFY(m_user->waitUntilGone(photo(gone)));
    m_user->look(QStringLiteral("removed"));

    // One replaced, with the keyboard alone.
    QVERIFY(m_user->clickOn([](const Thing &thing) { return thing.role == QStringLiteral("graphic"); }));
    QVERIFY(DesktopUser::key(QStringLiteral("Return")));
    QVERIFY(m_user->waitFor(text(QStringLiteral("Foto ersetzen"))));
    QVERIFY(m_user->waitFor([](const Thing &thing) { return thing.role == QStringLiteral("dialog"); }));
    QVERIFY(type(m_folder.filePath(QStringLiteral("other.jpg"))));
    m_user->look(QStringLiteral("photo-dialog"));
    QVERIFY(DesktopUser::key(QStringLiteral("Return")));
    QVERIFY(m_user->waitFor(photo(QStringLiteral("other.jpg"))));
    m_user->look(QStringLiteral("replaced"));

    // Nearer.
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+plus")));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+plus")));
    QVERIFY(m_user->waitUntilGone(text(QStringLiteral("Vergrößerung: 100 %"))));
    m_user->look(QStringLiteral("zoomed"));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+0")));

    // Saved.
    QCOMPARE(stored(), former);
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+s")));
    QTRY_COMPARE_WITH_TIMEOUT(stored().title, QStringLiteral("Ostsee 2026"), 30000);
    const QStringList photos = photosOf(stored());
    QCOMPARE(photos.size(), formerPhotos.size() - 1);
    QVERIFY(!photos.contains(gone));
    QVERIFY(photos.contains(QStringLiteral("other.jpg")));

    // For the printer.
    const QString pdf = m_folder.filePath(QStringLiteral("book.pdf"));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+e")));
    QVERIFY(m_user->waitFor([](const Thing &thing) { return thing.role == QStringLiteral("dialog"); }));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+a")));
    QVERIFY(type(pdf));
    QVERIFY(DesktopUser::key(QStringLiteral("Return")));
    QVERIFY(m_user->waitFor(text(QStringLiteral("Das Buch liegt als PDF in"))));
    m_user->look(QStringLiteral("exported"));
    QCOMPARE(QProcess::execute(QStringLiteral("qpdf"), {QStringLiteral("--check"), pdf}), 0);

    // A change that is given up: asked first.
    QVERIFY(DesktopUser::key(QStringLiteral("F2")));
    QVERIFY(type(QStringLiteral("Nordsee")));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+w")));
    QVERIFY(m_user->waitFor(text(QStringLiteral("Möchten Sie die Änderungen an"))));
    m_user->look(QStringLiteral("question"));
    QVERIFY(m_user->click(button, QStringLiteral("Verwerfen")));
    QVERIFY(m_program->waitForFinished(30000));
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(stored().title, QStringLiteral("Ostsee 2026"));

    // A program that is to end asks about changes, and does without an answer when it is told so again.
    start({m_project});
    QVERIFY(m_user->waitFor(window(QStringLiteral("Ostsee 2026"))));
    QVERIFY(m_user->waitFor(button, QStringLiteral("Weiter  ›")));
    QVERIFY(DesktopUser::key(QStringLiteral("F2")));
    QVERIFY(type(QStringLiteral("Nordsee")));
    m_program->terminate();
    QVERIFY(m_user->waitFor(text(QStringLiteral("Möchten Sie die Änderungen an"))));
    m_user->look(QStringLiteral("question-at-the-end"));
    m_program->terminate();
    QVERIFY(m_program->waitForFinished(30000));
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(stored().title, QStringLiteral("Ostsee 2026"));

    // What was not saved is there again, after a crash too, until it is undone.
    start({m_project});
    QVERIFY(m_user->waitFor(window(QStringLiteral("Nordsee"))));
    QVERIFY(m_user->waitFor(text(QStringLiteral("sind wieder da"))));
    QVERIFY(DesktopUser::key(QStringLiteral("F2")));
    QVERIFY(type(QStringLiteral("Polarmeer")));
    QVERIFY(DesktopUser::key(QStringLiteral("Return")));
    QVERIFY(m_user->waitFor(window(QStringLiteral("Polarmeer"))));
    QTRY_COMPARE_WITH_TIMEOUT(keptTitle(), QStringLiteral("Polarmeer"), 30000);
    m_program->kill();
    QVERIFY(m_program->waitForFinished(30000));
    start({m_project});
    QVERIFY(m_user->waitFor(window(QStringLiteral("Polarmeer"))));
    QVERIFY(m_user->waitFor(text(QStringLiteral("sind wieder da"))));
    m_user->look(QStringLiteral("restored"));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+z")));
    QVERIFY(m_user->waitFor(window(QStringLiteral("Ostsee 2026"))));
    QVERIFY(DesktopUser::key(QStringLiteral("ctrl+w")));
    QVERIFY(m_program->waitForFinished(30000));
    QCOMPARE(keptTitle(), QString());
    QCOMPARE(stored().title, QStringLiteral("Ostsee 2026"));

    // The start screen knows the new title.
    start({});
    QVERIFY(m_user->waitFor([](const Thing &thing) {
        return thing.role == QStringLiteral("list item") && thing.name.contains(QStringLiteral("Ostsee 2026"));
    }));
    m_user->look(QStringLiteral("start-screen"));
    m_program->terminate();
    QVERIFY(m_program->waitForFinished(30000));
}

QTEST_GUILESS_MAIN(tst_BookEditing)
#include "tst_BookEditing.moc"

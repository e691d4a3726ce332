#include "DesktopUser.h"
#include "TestSupport.h"

#include <NyBookProjectFile.h>

#include <QDir>
#include <QImage>
#include <QTest>

using namespace TestSupport;

/** A book in the main program, found and worked through the accessibility bus, with the pointer and with keys on a real display. */
class tst_BookView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void photosAreFoundAndSelected();
    void cleanup();

private:
    using Thing = DesktopUser::Thing;

    static DesktopUser::Condition photo(const QString &name)
    {
        return [name](const Thing &thing) { return thing.name == name; };
    }
    static DesktopUser::Condition selectedPhoto(const QString &name)
    {
        return [name](const Thing &thing) { return thing.isSelected && thing.name == name; };
    }
    static bool isSelected(const Thing &thing) { return thing.isSelected; }

    QString m_project;
    std::unique_ptr<DesktopUser> m_user;
    std::unique_ptr<QProcess> m_program;
};

void tst_BookView::initTestCase()
{
    QVERIFY(!qEnvironmentVariableIsEmpty("DISPLAY"));
    NyBookProject book;
    book.title = QStringLiteral("Sommer am Meer");
    const auto placed = [](const QString &name, const QColor &color, const QRectF &rectMm) {
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(color);
        NyPlacedFoto foto;
        foto.url = QUrl::fromLocalFile(QDir::homePath() + QLatin1Char('/') + name);
        foto.rectMm = rectMm;
        foto.sizePx = image.size();
        image.save(foto.url.toLocalFile());
        return foto;
    };
    book.cover.photos = {placed(QStringLiteral("titel.png"), Qt::darkCyan, QRectF(80, 20, 120, 90))};
    book.pages = {NyBookPage{{placed(QStringLiteral("strand.png"), Qt::darkYellow, QRectF(20, 20, 120, 90)),
                                 placed(QStringLiteral("hafen.png"), Qt::darkBlue, QRectF(150, 110, 100, 75))},
                      {}},
        NyBookPage{{placed(QStringLiteral("wald.png"), Qt::darkGreen, QRectF(60, 60, 120, 90))}, {}}};
    m_project = QDir::homePath() + QStringLiteral("/Sommer.nqp");
    QVERIFY(writeFile(m_project, NyBookProjectFile::toJson(book)));

    m_user = std::make_unique<DesktopUser>(QStringLiteral(NY_SCREENSHOT_DIR));
    QVERIFY(m_user->sitDown());
    m_program = std::make_unique<QProcess>();
    m_program->setProcessChannelMode(QProcess::ForwardedChannels);
    m_program->start(QStringLiteral(NY_MAIN_PROGRAM), {m_project});
    QVERIFY(m_program->waitForStarted());
}

void tst_BookView::photosAreFoundAndSelected()
{
    // The view tells the book and where it is open; its things are the photos of what is shown.
    const auto isOpenAt = [](const QString &spread) {
        return [spread](const Thing &thing) { return thing.name == QStringLiteral("Sommer am Meer") && thing.description == spread; };
    };
    QVERIFY(m_user->waitFor(isOpenAt(QStringLiteral("Titel"))));
    QVERIFY(m_user->waitFor(photo(QStringLiteral("titel.png, Foto 1 von 1"))));
    QVERIFY(DesktopUser::key(QStringLiteral("Right")));
    QVERIFY(m_user->waitFor(isOpenAt(QStringLiteral("Seiten 1 und 2 von 2"))));
    QVERIFY(m_user->waitFor(photo(QStringLiteral("strand.png, Foto 1 von 3"))));
    QVERIFY(m_user->waitFor(photo(QStringLiteral("wald.png, Foto 3 von 3"))));
    QVERIFY(m_user->waitUntilGone(photo(QStringLiteral("titel.png, Foto 1 von 1"))));
    QVERIFY(!m_user->find(isSelected));
    m_user->look(QStringLiteral("spread"));

    // The pointer goes where the bus says that the photo is.
    const QString harbour = QStringLiteral("hafen.png, Foto 2 von 3");
    QVERIFY(m_user->clickOn(photo(harbour)));
    QVERIFY(m_user->waitFor(selectedPhoto(harbour)));
    m_user->look(QStringLiteral("selected"));
    QVERIFY(DesktopUser::key(QStringLiteral("Tab")));
    QVERIFY(m_user->waitFor(selectedPhoto(QStringLiteral("wald.png, Foto 3 von 3"))));
    QVERIFY(m_user->waitUntilGone(selectedPhoto(harbour)));
    QVERIFY(DesktopUser::key(QStringLiteral("Escape")));
    QVERIFY(m_user->waitUntilGone(isSelected));

    // Without pointer or keys, as assistive technology does it.
    const std::optional<Thing> beach = m_user->find(photo(QStringLiteral("strand.png, Foto 1 von 3")));
    QVERIFY(beach);
    QVERIFY(m_user->act(*beach, 0));
    QVERIFY(m_user->waitFor(selectedPhoto(QStringLiteral("strand.png, Foto 1 von 3"))));
    QVERIFY(DesktopUser::key(QStringLiteral("Left")));
    QVERIFY(m_user->waitFor(photo(QStringLiteral("titel.png, Foto 1 von 1"))));
    QVERIFY(!m_user->find(isSelected));
}

void tst_BookView::cleanup()
{
    if (m_program) {
        m_program->terminate();
        QVERIFY(m_program->waitForFinished(30000));
    }
    m_program.reset();
    m_user.reset();
}

QTEST_GUILESS_MAIN(tst_BookView)
#include "tst_BookView.moc"

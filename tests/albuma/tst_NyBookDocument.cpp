#include <memory>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <fcntl.h>
#include <sys/stat.h>

#include <NyBookProjectFile.h>

#include "ComposedBooks.h"
#include "NyBookDocument.h"
#include "NyBookEditor.h"
#include "NyProposalCompanions.h"
#include "NySmallDisk.h"
#include "PaintedPictures.h"
#include "TestSupport.h"
#include "WithoutRootPowers.h"

using namespace Qt::Literals::StringLiterals;
using TestSupport::readFile;
using TestSupport::writeFile;

namespace
{

std::unique_ptr<NyBookDocument> opened(const QString &path)
{
    const NyBookDocument::Loaded loaded = NyBookDocument::load(path).result();
    return loaded.project ? std::make_unique<NyBookDocument>(loaded) : nullptr;
}

std::optional<NyBookProject> inFile(const QString &path)
{
    return NyBookProjectFile::load(QFileInfo(path)).project;
}

/** The signals that end a save, as words in their order. */
class Endings
{
public:
    explicit Endings(NyBookDocument &document)
    {
        QObject::connect(&document, &NyBookDocument::saved, &m_context, [this] { m_words.append(u"saved"_s); });
        QObject::connect(&document, &NyBookDocument::saveConflict, &m_context, [this] { m_words.append(u"conflict"_s); });
        QObject::connect(&document, &NyBookDocument::saveFailed, &m_context, [this](const QString &error) {
            m_words.append(u"failed"_s);
            m_error = error;
        });
    }

    const QStringList &words() const { return m_words; }
    const QString &error() const { return m_error; }

private:
    QObject m_context;
    QStringList m_words;
    QString m_error;
};

void ignoreWarning(const QString &start, const QString &path)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u'^' + start + u".*"_s + QRegularExpression::escape(path)));
}

/** Until all that was started in the background has had its effect. */
void settle()
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

}

class tst_NyBookDocument : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void loads();
    void loadingFails();
    void wordsAreOneStepEach();
    void stepsOnlyForChanges();
    void isModifiedAsTheFileTells();
    void removesPhotos();
    void replacesByTheUprightSize();
    void replacementFails_data();
    void replacementFails();
    void replacementForAPhotoThatIsGone();
    void lastReplacementWins();
    void destroyedWhileReplacing();
    void undoLeadsBackThroughAnyEdits();
    void saves();
    void editsDuringASaveStayModified();
    void savesDuringASave();
    void savingElsewhere();
    void savingElsewhereDuringASave();
    void destroyedWhileSaving();
    void keepsLinksAndPermissions();
    void changedByOthers_data();
    void changedByOthers();
    void newStampOnTheSameBook();
    void deletedMeanwhile();
    void cannotBeWritten_data();
    void cannotBeWritten();
    void fullDisk();
    void tooLargeToBeReadBack();
    void descriptionFollows();
    void brokenDescriptionStays_data();
    void brokenDescriptionStays();
    void previewFollowsTheCover();
    void previewWaitsForThePhoto();
    void companionsAreNotMade();
    void companionsThatCannotBeWritten();

private:
    NyBookProject project(int photos = 12) const;
    void writeBook(const QString &path);
    void writeDescription();
    QJsonObject description() const;

    QTemporaryDir m_pictures;
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

void tst_NyBookDocument::initTestCase()
{
    for (int i = 0; i < 4; ++i) {
        const QSize size = i == 3 ? QSize(900, 1200) : QSize(1200, 900);
        QVERIFY(PaintedPictures::write(m_pictures.filePath(u"%1.jpg"_s.arg(i)), PaintedPictures::painted(size, quint32(i))));
    }
    PaintedPictures::MetaData lying;
    lying.orientation = 6;
    QVERIFY(PaintedPictures::write(m_pictures.filePath(u"lying.jpg"_s), PaintedPictures::painted(QSize(1200, 900), 9), lying));
}

void tst_NyBookDocument::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_path = m_dir->filePath(u"Toskana & %1 \"Rom\".nqp"_s);
    writeBook(m_path);
}

void tst_NyBookDocument::cleanup()
{
    settle();
    QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_dir.reset();
}

NyBookProject tst_NyBookDocument::project(int photos) const
{
    QList<NyFotoFacts> facts = ComposedBooks::photos(photos, 2, ComposedBooks::Mix::Landscape);
    for (qsizetype i = 0; i < facts.size(); ++i) {
        facts[i].url = QUrl::fromLocalFile(m_pictures.filePath(u"%1.jpg"_s.arg(i % 3)));
        facts[i].sizePx = QSize(1200, 900);
    }
    return ComposedBooks::book(facts);
}

void tst_NyBookDocument::writeBook(const QString &path)
{
    QVERIFY(writeFile(path, NyBookProjectFile::toJson(project())));
}

void tst_NyBookDocument::writeDescription()
{
    const QJsonObject object{
        {u"headline"_s, u"Titel"_s},
        {u"subline"_s, u"Juli 2024"_s},
        {u"photoCount"_s, 12},
        {u"creationDateEpoch"_s, 1720000000},
        {u"menu"_s, QJsonArray{QJsonObject{{u"action"_s, u"open:a.nqp"_s}}}},
        {u"ofTomorrow"_s, QJsonObject{{u"depth"_s, 0.1}, {u"list"_s, QJsonArray{1, QJsonValue(), u"ä"_s}}}},
    };
    QVERIFY(writeFile(m_path + u".json"_s, QJsonDocument(object).toJson()));
}

QJsonObject tst_NyBookDocument::description() const
{
    return QJsonDocument::fromJson(readFile(m_path + u".json"_s)).object();
}

void tst_NyBookDocument::loads()
{
    const auto document = opened(m_path);
    QVERIFY(document);
    QCOMPARE(document->path(), m_path);
    QVERIFY(document->project() == project());
    QVERIFY(!document->isModified());
    QVERIFY(!document->isSaving());
    QVERIFY(!document->undoStack()->canUndo());
}

void tst_NyBookDocument::loadingFails()
{
    const QString missing = m_dir->filePath(u"fehlt.nqp"_s);
    NyBookDocument::Loaded loaded = NyBookDocument::load(missing).result();
    QVERIFY(!loaded.project);
    QVERIFY(loaded.error.contains(missing));
    QVERIFY(writeFile(missing, "{"));
    loaded = NyBookDocument::load(missing).result();
    QVERIFY(!loaded.project);
    QVERIFY(loaded.error.contains(missing));
}

void tst_NyBookDocument::wordsAreOneStepEach()
{
    const auto document = opened(m_path);
    QSignalSpy changes(document.get(), &NyBookDocument::changed);
    QSignalSpy modified(document.get(), &NyBookDocument::modifiedChanged);
    document->setWords(u"Rom"_s, u"Juli 2024"_s);
    document->setWords(u"Ostia"_s, u"Juli 2024"_s);
    QCOMPARE(document->project().title, u"Ostia"_s);
    QCOMPARE(document->undoStack()->undoText(), u"Titel ändern"_s);
    QCOMPARE(changes.size(), 2);
    QCOMPARE(modified, QList<QVariantList>({{true}}));
    document->undoStack()->undo();
    QCOMPARE(document->project().title, u"Rom"_s);
    document->undoStack()->undo();
    QVERIFY(document->project() == project());
    QVERIFY(!document->isModified());
    QCOMPARE(modified, QList<QVariantList>({{true}, {false}}));
    document->undoStack()->setIndex(2);
    QCOMPARE(document->project().title, u"Ostia"_s);
    QCOMPARE(changes.size(), 5);
}

void tst_NyBookDocument::stepsOnlyForChanges()
{
    const auto document = opened(m_path);
    QSignalSpy changes(document.get(), &NyBookDocument::changed);
    document->setWords(u"Titel"_s, u"Juli 2024"_s);
    document->setWords(u"  "_s, u"Juli 2024"_s);
    document->removePhoto({NyBookPlace::Cover, 0});
    document->removePhoto({999, 0});
    document->replacePhoto({999, 0}, QUrl::fromLocalFile(m_pictures.filePath(u"3.jpg"_s)));
    document->replacePhoto({0, 0}, document->project().photo({0, 0})->url);
    settle();
    QCOMPARE(changes.size(), 0);
    QCOMPARE(document->undoStack()->count(), 0);
    QVERIFY(!document->isModified());
}

void tst_NyBookDocument::isModifiedAsTheFileTells()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, u"Juli 2024"_s);
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QVERIFY(!document->isModified());
    document->undoStack()->undo();
    QVERIFY(document->isModified());
    document->setWords(u"Rom"_s, u"Juli 2024"_s);
    QVERIFY(!document->isModified());
}

void tst_NyBookDocument::removesPhotos()
{
    const auto document = opened(m_path);
    const int before = document->project().photoCount();
    document->removePhoto({0, 0});
    QCOMPARE(document->project().photoCount(), before - 1);
    QVERIFY(document->project() == NyBookEditor::withoutPhoto(project(), {0, 0}));
    QCOMPARE(document->undoStack()->undoText(), u"Foto entfernen"_s);
    QVERIFY(document->isModified());
}

void tst_NyBookDocument::replacesByTheUprightSize()
{
    const auto document = opened(m_path);
    QSignalSpy changes(document.get(), &NyBookDocument::changed);
    const QUrl url = QUrl::fromLocalFile(m_pictures.filePath(u"lying.jpg"_s));
    for (const NyBookPlace place : {NyBookPlace{0, 0}, NyBookPlace{NyBookPlace::Cover, 0}}) {
        const NyBookProject before = document->project();
        changes.clear();
        document->replacePhoto(place, url);
        QVERIFY(document->project() == before);
        QVERIFY(changes.wait());
        QVERIFY(document->project() == NyBookEditor::withPhoto(before, place, url, QSize(900, 1200)));
        QCOMPARE(document->project().photo(place)->url, url);
        QCOMPARE(document->undoStack()->undoText(), u"Foto ersetzen"_s);
    }
}

void tst_NyBookDocument::replacementFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << u"fehlt & %1.jpg"_s;
    QTest::newRow("no picture") << u"text.jpg"_s;
    QTest::newRow("empty") << u"leer.jpg"_s;
    QTest::newRow("folder") << u"ordner.jpg"_s;
    QTest::newRow("elsewhere") << u"https://example.invalid/a.jpg"_s;
}

void tst_NyBookDocument::replacementFails()
{
    QFETCH(QString, name);
    QVERIFY(writeFile(m_dir->filePath(u"text.jpg"_s), "kein Bild"));
    QVERIFY(writeFile(m_dir->filePath(u"leer.jpg"_s), ""));
    QVERIFY(QDir().mkpath(m_dir->filePath(u"ordner.jpg"_s)));
    const auto document = opened(m_path);
    QSignalSpy failures(document.get(), &NyBookDocument::replaceFailed);
    const bool isLocal = !name.startsWith(u"https:");
    if (isLocal)
        ignoreWarning(u"NyImageLoader: cannot read the picture"_s, name);
    document->replacePhoto({0, 0}, isLocal ? QUrl::fromLocalFile(m_dir->filePath(name)) : QUrl(name));
    QVERIFY(failures.wait());
    QVERIFY(failures.at(0).at(0).toString().contains(isLocal ? m_dir->filePath(name) : name));
    QCOMPARE(document->undoStack()->count(), 0);
    QVERIFY(document->project() == project());
}

void tst_NyBookDocument::replacementForAPhotoThatIsGone()
{
    const auto document = opened(m_path);
    QSignalSpy failures(document.get(), &NyBookDocument::replaceFailed);
    // Behind it another photo moves up into its place.
    document->replacePhoto({0, 0}, QUrl::fromLocalFile(m_pictures.filePath(u"3.jpg"_s)));
    document->removePhoto({0, 0});
    const NyBookProject after = document->project();
    settle();
    QVERIFY(document->project() == after);

    const NyBookPlace last{int(after.pages.size()) - 1, int(after.pages.constLast().photos.size()) - 1};
    document->replacePhoto(last, QUrl::fromLocalFile(m_pictures.filePath(u"3.jpg"_s)));
    document->removePhoto(last);
    const NyBookProject shorter = document->project();
    settle();
    QVERIFY(document->project() == shorter);
    QCOMPARE(document->undoStack()->count(), 2);
    QCOMPARE(failures.size(), 0);
}

void tst_NyBookDocument::lastReplacementWins()
{
    const auto document = opened(m_path);
    const auto picture = [&](const QString &name) { return QUrl::fromLocalFile(m_pictures.filePath(name)); };
    document->replacePhoto({0, 0}, picture(u"lying.jpg"_s));
    document->replacePhoto({1, 0}, picture(u"lying.jpg"_s));
    document->replacePhoto({0, 0}, picture(u"3.jpg"_s));
    settle();
    QCOMPARE(document->project().photo({0, 0})->url, picture(u"3.jpg"_s));
    QCOMPARE(document->project().photo({1, 0})->url, picture(u"lying.jpg"_s));
    QCOMPARE(document->undoStack()->count(), 2);
}

void tst_NyBookDocument::destroyedWhileReplacing()
{
    auto document = opened(m_path);
    QSignalSpy changes(document.get(), &NyBookDocument::changed);
    document->replacePhoto({0, 0}, QUrl::fromLocalFile(m_pictures.filePath(u"3.jpg"_s)));
    document.reset();
    settle();
    QCOMPARE(changes.size(), 0);
}

void tst_NyBookDocument::undoLeadsBackThroughAnyEdits()
{
    for (quint32 seed = 0; seed < 8; ++seed) {
        const NyBookProject original = project(int(5 + seed * 7));
        NyBookDocument document(NyBookDocument::Loaded{m_path, {}, original, {}});
        QRandomGenerator random(seed);
        QList<NyBookProject> states{original};
        QObject::connect(&document, &NyBookDocument::changed, &document, [&] { states.append(document.project()); });
        for (int edit = 0; edit < 20; ++edit) {
            const auto &pages = document.project().pages;
            NyBookPlace place{random.bounded(-1, int(pages.size())), 0};
            if (place.page >= 0)
                place.photo = random.bounded(int(pages.at(place.page).photos.size()));
            switch (random.bounded(3)) {
            case 0:
                document.setWords(QString::number(random.bounded(3)), QString(random.bounded(2), u'x'));
                break;
            case 1:
                document.removePhoto(place);
                break;
            default:
                document.replacePhoto(place, QUrl::fromLocalFile(m_pictures.filePath(u"%1.jpg"_s.arg(random.bounded(4)))));
                settle();
            }
        }
        const QList<NyBookProject> forth = states;
        QCOMPARE(document.undoStack()->count(), forth.size() - 1);
        QVERIFY(forth.size() > 5);
        for (qsizetype i = forth.size() - 2; i >= 0; --i) {
            document.undoStack()->undo();
            QVERIFY(document.project() == forth.at(i));
            QCOMPARE(document.isModified(), document.project() != original);
        }
        for (qsizetype i = 1; i < forth.size(); ++i) {
            document.undoStack()->redo();
            QVERIFY(document.project() == forth.at(i));
        }
    }
}

void tst_NyBookDocument::saves()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    QSignalSpy modified(document.get(), &NyBookDocument::modifiedChanged);
    for (const QString &title : {u"Rom"_s, u"Ostia"_s}) {
        modified.clear();
        document->setWords(title, QString());
        document->save();
        QVERIFY(document->isSaving());
        QTRY_VERIFY(!document->isSaving());
        QVERIFY(inFile(m_path) == document->project());
        QCOMPARE(inFile(m_path)->title, title);
        QCOMPARE(modified, QList<QVariantList>({{true}, {false}}));
    }
    QCOMPARE(endings.words(), QStringList({u"saved"_s, u"saved"_s}));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{QFileInfo(m_path).fileName()});
}

void tst_NyBookDocument::editsDuringASaveStayModified()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    document->save();
    document->setWords(u"Ostia"_s, QString());
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QVERIFY(document->isModified());
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
    document->undoStack()->undo();
    QVERIFY(!document->isModified());
}

void tst_NyBookDocument::savesDuringASave()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    document->save();
    document->save();
    QTRY_VERIFY(!document->isSaving());
    QCOMPARE(endings.words(), QStringList{u"saved"_s});
    document->setWords(u"Ostia"_s, QString());
    document->save();
    document->setWords(u"Pisa"_s, QString());
    document->save();
    document->setWords(u"Siena"_s, QString());
    document->save();
    QTRY_VERIFY(!document->isSaving());
    QCOMPARE(endings.words(), QStringList({u"saved"_s, u"saved"_s}));
    QCOMPARE(inFile(m_path)->title, u"Siena"_s);
    QVERIFY(!document->isModified());

    // What would fail in the same way is told once.
    NyBookProject other = project();
    other.title = u"von anderen"_s;
    QVERIFY(writeFile(m_path, NyBookProjectFile::toJson(other)));
    ignoreWarning(u"book not written"_s, m_path);
    document->save();
    document->save();
    QTRY_VERIFY(!document->isSaving());
    QCOMPARE(endings.words().mid(2), QStringList{u"conflict"_s});
    ignoreWarning(u"book not written"_s, m_path);
    document->save();
    document->save(NyBookDocument::Overwrite::Yes);
    QTRY_VERIFY(!document->isSaving());
    QCOMPARE(endings.words().mid(3), QStringList({u"conflict"_s, u"saved"_s}));
    QCOMPARE(inFile(m_path)->title, u"Siena"_s);
}

void tst_NyBookDocument::savingElsewhere()
{
    writeDescription();
    const QString other = m_dir->filePath(u"anderes.nqp"_s);
    for (const QString &ending : {u""_s, u".json"_s, u".png"_s})
        QVERIFY(writeFile(other + ending, "von anderen"));
    const QByteArray before = readFile(m_path);
    const QByteArray descriptionBefore = readFile(m_path + u".json"_s);
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    document->saveAs(other);
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QCOMPARE(document->path(), other);
    QVERIFY(!document->isModified());
    QCOMPARE(inFile(other)->title, u"Rom"_s);
    QCOMPARE(readFile(other + u".json"_s), "von anderen"_ba);
    QCOMPARE(readFile(other + u".png"_s), "von anderen"_ba);
    QCOMPARE(readFile(m_path), before);
    QCOMPARE(readFile(m_path + u".json"_s), descriptionBefore);

    QVERIFY(QFile::remove(other + u".json"_s) && QFile::remove(other + u".png"_s));
    document->setWords(u"Ostia"_s, QString());
    document->save();
    QTRY_COMPARE(endings.words().size(), 2);
    QCOMPARE(inFile(other)->title, u"Ostia"_s);
    QCOMPARE(readFile(m_path), before);

    const QString unreachable = m_dir->filePath(u"fehlt/a.nqp"_s);
    ignoreWarning(u"cannot write"_s, unreachable);
    document->saveAs(unreachable);
    QTRY_COMPARE(endings.words().size(), 3);
    QVERIFY(endings.error().contains(unreachable));
    QCOMPARE(document->path(), other);
}

void tst_NyBookDocument::savingElsewhereDuringASave()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    const QString other = m_dir->filePath(u"anderes.nqpx"_s);
    document->setWords(u"Rom"_s, QString());
    document->save();
    document->setWords(u"Ostia"_s, QString());
    document->saveAs(other);
    document->save();
    QTRY_VERIFY(!document->isSaving());
    QCOMPARE(endings.words(), QStringList{u"saved"_s});
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
    QCOMPARE(inFile(other)->title, u"Ostia"_s);
    QCOMPARE(document->path(), other);
    QVERIFY(!document->isModified());
}

void tst_NyBookDocument::destroyedWhileSaving()
{
    auto document = opened(m_path);
    document->setWords(u"Rom"_s, QString());
    document->save();
    document.reset();
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);

    document = opened(m_path);
    document->setWords(u"Ostia"_s, QString());
    document->save();
    document->setWords(u"Pisa"_s, QString());
    document->save();
    document.reset();
    QCOMPARE(inFile(m_path)->title, u"Pisa"_s);
}

void tst_NyBookDocument::keepsLinksAndPermissions()
{
    const auto mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(m_path, mode));
    const QString link = m_dir->filePath(u"link.nqp"_s);
    QVERIFY(QFile::link(QFileInfo(m_path).fileName(), link));
    const auto document = opened(link);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QVERIFY(QFileInfo(link).isSymLink());
    QVERIFY(!QFileInfo(m_path).isSymLink());
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0640));
    document->setWords(u"Ostia"_s, QString());
    document->save();
    QTRY_COMPARE(endings.words(), QStringList({u"saved"_s, u"saved"_s}));
}

void tst_NyBookDocument::changedByOthers_data()
{
    QTest::addColumn<QByteArray>("content");
    NyBookProject other = project();
    other.title = u"Tutel"_s;
    QTest::newRow("another book of the same length") << NyBookProjectFile::toJson(other).replace("\"Titel\"", "\"Tutel\"");
    QTest::newRow("no book") << "von anderen"_ba;
    QTest::newRow("empty") << ""_ba;
}

void tst_NyBookDocument::changedByOthers()
{
    QFETCH(QByteArray, content);
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &status), 0);
    QVERIFY(writeFile(m_path, content));
    // Some programs put the time back.
    const timespec times[] = {status.st_atim, status.st_mtim};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(m_path).constData(), times, 0), 0);
    ignoreWarning(u"book not written"_s, m_path);
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"conflict"_s});
    QCOMPARE(readFile(m_path), content);
    QVERIFY(document->isModified());
    document->save(NyBookDocument::Overwrite::Yes);
    QTRY_COMPARE(endings.words(), QStringList({u"conflict"_s, u"saved"_s}));
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
    document->setWords(u"Ostia"_s, QString());
    document->save();
    QTRY_COMPARE(endings.words().mid(2), QStringList{u"saved"_s});
}

void tst_NyBookDocument::newStampOnTheSameBook()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    QVERIFY(QFile::rename(m_path, m_path + u".old"_s));
    QVERIFY(writeFile(m_path, QJsonDocument::fromJson(readFile(m_path + u".old"_s)).toJson(QJsonDocument::Compact)));
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
}

void tst_NyBookDocument::deletedMeanwhile()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    QVERIFY(QFile::remove(m_path));
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QVERIFY(inFile(m_path) == project());
}

void tst_NyBookDocument::cannotBeWritten_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("read-only folder") << u"folder"_s;
    QTest::newRow("folder is gone") << u"gone"_s;
}

void tst_NyBookDocument::cannotBeWritten()
{
    QFETCH(QString, obstacle);
    const QByteArray before = readFile(m_path);
    const QString aside = m_dir->path() + u".aside"_s;
    {
        const WithoutRootPowers mortal;
        const auto document = opened(m_path);
        Endings endings(*document);
        document->setWords(u"Rom"_s, QString());
        if (obstacle == u"folder")
            QVERIFY(QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::ExeOwner));
        else
            QVERIFY(QDir().rename(m_dir->path(), aside));
        ignoreWarning(u"cannot write"_s, m_path);
        document->save();
        QTRY_COMPARE(endings.words(), QStringList{u"failed"_s});
        QVERIFY2(endings.error().contains(m_path), qPrintable(endings.error()));
        QVERIFY(document->isModified());

        if (obstacle == u"gone")
            QVERIFY(QDir().rename(aside, m_dir->path()));
        QCOMPARE(readFile(m_path), before);
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{QFileInfo(m_path).fileName()});
        QVERIFY(QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        document->save();
        QTRY_COMPARE(endings.words(), QStringList({u"failed"_s, u"saved"_s}));
        QVERIFY(!document->isModified());
    }
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
}

void tst_NyBookDocument::fullDisk()
{
    NySmallDisk disk("1m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused");
    const QString path = disk.filePath(u"a.nqp"_s);
    writeBook(path);
    const QByteArray before = readFile(path);
    QVERIFY(disk.fill());
    const auto document = opened(path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    ignoreWarning(u"cannot write"_s, path);
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"failed"_s});
    QVERIFY(endings.error().contains(path));
    QVERIFY2(!endings.error().trimmed().endsWith(u':'), "the reason is missing");
    QCOMPARE(readFile(path), before);
    QVERIFY(document->isModified());
    QVERIFY(disk.clear());
    document->save();
    QTRY_COMPARE(endings.words(), QStringList({u"failed"_s, u"saved"_s}));
    QCOMPARE(inFile(path)->title, u"Rom"_s);
}

void tst_NyBookDocument::tooLargeToBeReadBack()
{
    NyBookProject large = project();
    NyBookText caption;
    caption.text = QString(20000, u'x');
    caption.rectMm = QRectF(20, 20, 100, 10);
    for (qint64 bytes = 0; bytes < NyBookProjectFile::MaximumBytes; bytes += 100 * caption.text.size())
        large.pages.append(NyBookPage{{}, QList<NyBookText>(100, caption)});
    const QByteArray before = readFile(m_path);
    NyBookDocument document(NyBookDocument::Loaded{m_path, NyBookDocument::Stamp::ofFile(m_path), large, {}});
    Endings endings(document);
    document.save();
    QTRY_COMPARE_WITH_TIMEOUT(endings.words(), QStringList{u"failed"_s}, 30000);
    QVERIFY(endings.error().contains(m_path));
    QCOMPARE(readFile(m_path), before);
}

void tst_NyBookDocument::descriptionFollows()
{
    writeDescription();
    const QJsonObject before = description();
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom & \"Ostia\""_s, QString());
    document->removePhoto({0, 0});
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QJsonObject expected = before;
    expected[u"headline"_s] = u"Rom & \"Ostia\""_s;
    expected[u"subline"_s] = QString();
    expected[u"photoCount"_s] = 11;
    expected[u"pageCount"_s] = int(document->project().pages.size());
    expected[u"lowResolutionCount"_s] = NyBookComposer::lowResolutionCount(document->project());
    QCOMPARE(description(), expected);
    QVERIFY(!QFile::exists(m_path + u".png"_s));
    QVERIFY(QFileInfo(m_path).lastModified() <= QFileInfo(m_path + u".json"_s).lastModified());
}

void tst_NyBookDocument::brokenDescriptionStays_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << ""_ba;
    QTest::newRow("half") << "{\"headline\": \"Ti"_ba;
    QTest::newRow("a list") << "[1, 2]"_ba;
    QTest::newRow("something else") << "{\"name\": \"x\"}"_ba;
    QTest::newRow("headline is no text") << "{\"headline\": 7}"_ba;
}

void tst_NyBookDocument::brokenDescriptionStays()
{
    QFETCH(QByteArray, content);
    QVERIFY(writeFile(m_path + u".json"_s, content));
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    ignoreWarning(u"no description of a proposal"_s, m_path + u".json"_s);
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QCOMPARE(readFile(m_path + u".json"_s), content);
    QCOMPARE(inFile(m_path)->title, u"Rom"_s);
}

void tst_NyBookDocument::previewFollowsTheCover()
{
    const QString preview = m_path + u".png"_s;
    QVERIFY(writeFile(preview, "alt"));
    const auto document = opened(m_path);
    Endings endings(*document);
    document->removePhoto({0, 0});
    document->save();
    QTRY_COMPARE(endings.words().size(), 1);
    QCOMPARE(readFile(preview), "alt"_ba);

    document->setWords(u"Rom"_s, QString());
    document->save();
    QTRY_COMPARE(endings.words().size(), 2);
    const QImage titled(preview);
    QCOMPARE(titled.width(), NyProposalCompanions::PreviewWidthPx);

    document->replacePhoto({NyBookPlace::Cover, 0}, QUrl::fromLocalFile(m_pictures.filePath(u"3.jpg"_s)));
    settle();
    document->save();
    QTRY_COMPARE(endings.words().size(), 3);
    const QImage replaced(preview);
    QCOMPARE(replaced.size(), titled.size());
    QVERIFY(replaced != titled);
    QVERIFY(QFileInfo(m_path).lastModified() <= QFileInfo(preview).lastModified());
    QCOMPARE(endings.words(), QStringList(3, u"saved"_s));
}

void tst_NyBookDocument::previewWaitsForThePhoto()
{
    const QString preview = m_path + u".png"_s;
    QVERIFY(writeFile(preview, "alt"));
    const QString photo = m_dir->filePath(u"einband.jpg"_s);
    NyBookProject book = project();
    book.cover.photos[0].url = QUrl::fromLocalFile(photo);
    QVERIFY(writeFile(m_path, NyBookProjectFile::toJson(book)));
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    ignoreWarning(u"NyImageLoader: cannot read the picture"_s, photo);
    ignoreWarning(u"preview left as it is"_s, preview);
    document->save();
    QTRY_COMPARE(endings.words().size(), 1);
    QCOMPARE(readFile(preview), "alt"_ba);

    QVERIFY(QFile::copy(m_pictures.filePath(u"1.jpg"_s), photo));
    document->removePhoto({0, 0});
    document->save();
    QTRY_COMPARE(endings.words(), QStringList(2, u"saved"_s));
    QCOMPARE(QImage(preview).width(), NyProposalCompanions::PreviewWidthPx);
}

void tst_NyBookDocument::companionsAreNotMade()
{
    const auto document = opened(m_path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{QFileInfo(m_path).fileName()});
}

void tst_NyBookDocument::companionsThatCannotBeWritten()
{
    NySmallDisk disk("4m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused");
    const QString path = disk.filePath(u"a.nqp"_s);
    const QString preview = path + u".png"_s;
    writeBook(path);
    // Larger than the book, so that there is room for that alone.
    const QByteArray descriptionBefore = "{\"headline\": \"Titel\", \"ofTomorrow\": \"" + QByteArray(300000, 'x') + "\"}";
    QVERIFY(writeFile(path + u".json"_s, descriptionBefore));
    QVERIFY(writeFile(preview, "alt"));
    QVERIFY(disk.fill(QFileInfo(path).size() + 3 * 4096));
    const auto document = opened(path);
    Endings endings(*document);
    document->setWords(u"Rom"_s, QString());
    ignoreWarning(u"cannot write"_s, path + u".json"_s);
    ignoreWarning(u"the start screen shows old words"_s, path);
    ignoreWarning(u"cannot write"_s, preview);
    document->save();
    QTRY_COMPARE(endings.words(), QStringList{u"saved"_s});
    QVERIFY(!document->isModified());
    QCOMPARE(inFile(path)->title, u"Rom"_s);
    QCOMPARE(readFile(path + u".json"_s), descriptionBefore);
    QCOMPARE(readFile(preview), "alt"_ba);

    QVERIFY(disk.clear());
    document->save();
    QTRY_COMPARE(endings.words(), QStringList(2, u"saved"_s));
    const QJsonObject after = QJsonDocument::fromJson(readFile(path + u".json"_s)).object();
    QCOMPARE(after[u"headline"].toString(), u"Rom"_s);
    QCOMPARE(after[u"ofTomorrow"].toString().size(), 300000);
    QCOMPARE(QImage(preview).width(), NyProposalCompanions::PreviewWidthPx);
}

QTEST_MAIN(tst_NyBookDocument)
#include "tst_NyBookDocument.moc"

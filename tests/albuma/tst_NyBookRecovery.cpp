#include <memory>

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUndoStack>

#include <NyBookProjectFile.h>
#include <NyDirectoryConfig.h>

#include "ComposedBooks.h"
#include "NyBookDocument.h"
#include "NyBookRecovery.h"
#include "TestSupport.h"

using namespace Qt::Literals::StringLiterals;
using TestSupport::readFile;
using TestSupport::writeFile;

namespace
{

QString folder()
{
    return NyDirectoryConfig::instance().recoveryFolder();
}

NyBookProject project(const QString &title)
{
    NyBookProject book = ComposedBooks::book(ComposedBooks::photos(8, 2, ComposedBooks::Mix::Landscape));
    book.title = title;
    return book;
}

/** The title in a file of edits; empty if there is no such file. */
QString keptTitle(const QString &bookPath)
{
    const QFileInfo file(NyBookRecovery::fileOf(bookPath));
    return file.exists() ? NyBookProjectFile::load(file).project.value_or(NyBookProject()).title : QString();
}

/** A book that is open, as the window has it. */
struct Opened
{
    explicit Opened(const QString &path)
        : document(NyBookDocument::load(path).result())
        , recovery(std::make_unique<NyBookRecovery>(document))
        , restored(recovery.get(), &NyBookRecovery::restored)
    {
    }

    void setTitle(const QString &title) { document.setWords(title, QString()); }
    QString title() const { return document.project().title; }

    NyBookDocument document;
    std::unique_ptr<NyBookRecovery> recovery;
    QSignalSpy restored;
};

}

class tst_NyBookRecovery : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void editsComeBack();
    void lastEditIsKept();
    void savedEditsAreForgotten();
    void undoneEditsAreForgotten();
    void discardedEditsAreForgotten();
    void editsAfterDiscardedOnesAreKept();
    void editsThatWereSavedAfterAll();
    void savingElsewhereTakesThemAlong();
    void onlyOneKeepsThem();
    void brokenEdits();
    void unwritableFolder();
    void oldEditsAreDeleted();
    void editsOfAnotherBookOfThatName();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

void tst_NyBookRecovery::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    QDir(folder()).removeRecursively();
    m_dir = std::make_unique<QTemporaryDir>();
    m_path = m_dir->filePath(u"Toskana.nqp"_s);
    QVERIFY(writeFile(m_path, NyBookProjectFile::toJson(project(u"Toskana"_s))));
}

void tst_NyBookRecovery::cleanup()
{
    QFile::remove(folder());
}

void tst_NyBookRecovery::editsComeBack()
{
    const QByteArray before = readFile(m_path);
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
        book.setTitle(u"Ostia"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Ostia"_s);
        book.setTitle(u"Pisa"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Pisa"_s);
        QCOMPARE(readFile(m_path), before);
    }
    QCOMPARE(keptTitle(m_path), u"Pisa"_s);
    const QDateTime written = QFileInfo(NyBookRecovery::fileOf(m_path)).lastModified();
    // Twice, since nobody has saved them the first time either.
    for (int i = 0; i < 2; ++i) {
        Opened book(m_path);
        QTRY_COMPARE(book.restored.count(), 1);
        if (i == 0)
            QCOMPARE(book.restored.first().first().toDateTime(), written);
        QCOMPARE(book.title(), u"Pisa"_s);
        QVERIFY(book.document.isModified());
    }
    Opened book(m_path);
    QTRY_COMPARE(book.restored.count(), 1);
    book.document.undoStack()->undo();
    QCOMPARE(book.title(), u"Toskana"_s);
    QVERIFY(!book.document.isModified());
    QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    book.document.undoStack()->redo();
    QTRY_COMPARE(keptTitle(m_path), u"Pisa"_s);
}

void tst_NyBookRecovery::lastEditIsKept()
{
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
        book.setTitle(u"Ostia"_s);
    }
    QCOMPARE(keptTitle(m_path), u"Ostia"_s);
}

void tst_NyBookRecovery::savedEditsAreForgotten()
{
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
        book.document.save();
        QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
        QVERIFY(!book.document.isModified());
    }
    // Nothing is left, not even of the lock.
    QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList());
    Opened book(m_path);
    book.setTitle(u"Ostia"_s);
    book.document.save();
    QTRY_VERIFY(!book.document.isModified());
    QTest::qWait(int(NyBookRecovery::Delay.count()) + 200);
    QVERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    QCOMPARE(book.restored.count(), 0);
}

void tst_NyBookRecovery::undoneEditsAreForgotten()
{
    Opened book(m_path);
    book.setTitle(u"Rom"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
    book.document.undoStack()->undo();
    QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
}

void tst_NyBookRecovery::discardedEditsAreForgotten()
{
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
        book.setTitle(u"Ostia"_s);
        book.recovery->discard();
    }
    QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void tst_NyBookRecovery::editsAfterDiscardedOnesAreKept()
{
    Opened book(m_path);
    book.setTitle(u"Rom"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
    book.recovery->discard();
    QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    book.setTitle(u"Ostia"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Ostia"_s);
}

void tst_NyBookRecovery::editsThatWereSavedAfterAll()
{
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
        QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
        const QByteArray kept = readFile(NyBookRecovery::fileOf(m_path));
        QVERIFY(writeFile(m_path, kept));
    }
    Opened book(m_path);
    QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    QCOMPARE(book.restored.count(), 0);
    QVERIFY(!book.document.isModified());
    QVERIFY(!book.document.undoStack()->canUndo());
}

void tst_NyBookRecovery::savingElsewhereTakesThemAlong()
{
    const QString other = m_dir->filePath(u"anderes.nqp"_s);
    Opened book(m_path);
    book.setTitle(u"Rom"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
    book.document.saveAs(other);
    QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    book.setTitle(u"Ostia"_s);
    QTRY_COMPARE(keptTitle(other), u"Ostia"_s);
    QVERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
}

void tst_NyBookRecovery::onlyOneKeepsThem()
{
    auto first = std::make_unique<Opened>(m_path);
    first->setTitle(u"Rom"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
    Opened second(m_path);
    second.setTitle(u"Ostia"_s);
    second.document.undoStack()->undo();
    second.setTitle(u"Pisa"_s);
    QTest::qWait(int(NyBookRecovery::Delay.count()) + 200);
    QCOMPARE(second.restored.count(), 0);
    QCOMPARE(keptTitle(m_path), u"Rom"_s);

    first->recovery->discard();
    first.reset();
    QVERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    second.setTitle(u"Siena"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Siena"_s);
}

void tst_NyBookRecovery::brokenEdits()
{
    const QString file = NyBookRecovery::fileOf(m_path);
    QVERIFY(QDir().mkpath(folder()));
    QVERIFY(writeFile(file, "{\"formatVersion\": 1, \"ti"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^unsaved edits of a book cannot be read and are set aside: .*nqp"_s));
    Opened book(m_path);
    QTRY_COMPARE(readFile(file + u".broken"_s), "{\"formatVersion\": 1, \"ti"_ba);
    book.setTitle(u"Rom"_s);
    QTRY_COMPARE(keptTitle(m_path), u"Rom"_s);
    QCOMPARE(book.restored.count(), 0);
    QVERIFY(QFile::exists(file + u".broken"_s));
}

void tst_NyBookRecovery::unwritableFolder()
{
    QVERIFY(QDir().mkpath(QFileInfo(folder()).absolutePath()));
    QVERIFY(writeFile(folder(), "a file"));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(u"unsaved edits would not survive a crash, cannot write "_s + folder()));
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
        QTest::qWait(int(NyBookRecovery::Delay.count()) + 200);
        book.setTitle(u"Ostia"_s);
    }
    QCOMPARE(readFile(folder()), "a file"_ba);
}

void tst_NyBookRecovery::oldEditsAreDeleted()
{
    QVERIFY(QDir().mkpath(folder()));
    const auto writeOld = [](const QString &path, int days) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write("{}") == 2 && file.flush()
            && file.setFileTime(QDateTime::currentDateTime().addDays(-days), QFile::FileModificationTime);
    };
    const QString old = folder() + u"/alt.nqp"_s;
    const QString young = folder() + u"/jung.nqp"_s;
    const QString own = NyBookRecovery::fileOf(m_path);
    QVERIFY(writeOld(old, NyBookRecovery::LongestDays + 1));
    QVERIFY(writeOld(young, NyBookRecovery::LongestDays - 1));
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
    }
    QFile file(own);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-NyBookRecovery::LongestDays - 1), QFile::FileModificationTime));
    QVERIFY(writeOld(old, NyBookRecovery::LongestDays + 1));
    const Opened book(m_path);
    QTRY_COMPARE(book.restored.count(), 1);
    QCOMPARE(book.title(), u"Rom"_s);
    QVERIFY(!QFile::exists(old));
    QVERIFY(QFile::exists(young));
}

void tst_NyBookRecovery::editsOfAnotherBookOfThatName()
{
    {
        Opened book(m_path);
        book.setTitle(u"Rom"_s);
    }
    QCOMPARE(keptTitle(m_path), u"Rom"_s);
    NyBookProject other = project(u"Ostsee"_s);
    other.creationDateEpoch += 1;
    QVERIFY(writeFile(m_path, NyBookProjectFile::toJson(other)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^unsaved edits are of another book than .*Toskana.nqp .*: Rom$"_s));
    const Opened book(m_path);
    QTRY_VERIFY(!QFile::exists(NyBookRecovery::fileOf(m_path)));
    QCOMPARE(book.restored.count(), 0);
    QCOMPARE(book.title(), u"Ostsee"_s);
}

QTEST_GUILESS_MAIN(tst_NyBookRecovery)
#include "tst_NyBookRecovery.moc"

#include <QTest>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyFileHandler.h>

#include "NySmallDisk.h"

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "unreadable"_ba;
}

void ignoreWarning(const QString &start, const QString &path)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^"_s + start + u' ' + QRegularExpression::escape(path) + u' '));
}

const QStringList hostileNames{
    u"with blank"_s,
    u"line\nbreak"_s,
    u"per%1cent"_s,
    u"am&per:colon\"quote'"_s,
    u"-leading"_s,
    u".hidden"_s,
    u"composed \u00e4"_s,
    u"decomposed a\u0308"_s,
    QString::fromUcs4(U"camera \U0001F4F7"),
    u"back\\slash"_s,
    u"star*?[x]"_s,
    QString(255, u'n'),
};

} // namespace

class tst_NyFileHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void writesNewFile_data();
    void writesNewFile();
    void emptyContent();
    void replacesWhole();
    void keepsPermissions();
    void followsLink();
    void linkThatLeadsNowhere();
    void missingFolder();
    void folderInItsPlace();
    void noName();
    void fullDiskKeepsTheOldFile_data();
    void fullDiskKeepsTheOldFile();
    void deletesFilesNotFolders();
    void deletesHostileNames();
    void missingFilesAreNoFailure();
    void fileThatCannotBeDeleted();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyFileHandler::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_NyFileHandler::writesNewFile_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : hostileNames)
        QTest::newRow(name.left(20).toUtf8().replace('\n', ' ').constData()) << name;
}

void tst_NyFileHandler::writesNewFile()
{
    QFETCH(QString, name);
    // The longest name leaves no room for the ending of a file in the making.
    const QString path = m_folder->filePath(name.size() == 255 ? name.left(248) : name);
    const QByteArray content = "a\0b\nc"_ba;
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), content));
    QCOMPARE(contentOf(path), content);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
}

void tst_NyFileHandler::emptyContent()
{
    const QString path = m_folder->filePath(u"file"_s);
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), QByteArray()));
    QVERIFY(QFile::exists(path));
    QCOMPARE(contentOf(path), QByteArray());
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), "something"));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), ""));
    QCOMPARE(contentOf(path), QByteArray());
}

void tst_NyFileHandler::replacesWhole()
{
    const QString path = m_folder->filePath(u"file"_s);
    const QByteArray large(300'000, 'l');
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), large));
    QCOMPARE(contentOf(path), large);
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), "small"));
    QCOMPARE(contentOf(path), "small");
}

void tst_NyFileHandler::keepsPermissions()
{
    const QString path = m_folder->filePath(u"file"_s);
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), "a"));
    constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QVERIFY(QFile::setPermissions(path, ownerOnly));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), "b"));
    struct stat status;
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0600));
}

void tst_NyFileHandler::followsLink()
{
    const QString target = m_folder->filePath(u"target"_s);
    const QString link = m_folder->filePath(u"link"_s);
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(target), "old"));
    QVERIFY(QFile::link(target, link));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(link), "new"));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(contentOf(target), "new");
}

void tst_NyFileHandler::linkThatLeadsNowhere()
{
    const QString target = m_folder->filePath(u"target"_s);
    const QString link = m_folder->filePath(u"link"_s);
    QVERIFY(QFile::link(target, link));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(link), "new"));
    QCOMPARE(contentOf(link), "new");
}

void tst_NyFileHandler::missingFolder()
{
    const QString path = m_folder->filePath(u"not there/file"_s);
    ignoreWarning(u"cannot write"_s, path);
    QString reason;
    QVERIFY(!NyFileHandler::writeBinaryFile(QFileInfo(path), "a", &reason));
    QVERIFY(!reason.isEmpty());
    QVERIFY(!QFile::exists(m_folder->filePath(u"not there"_s)));
}

void tst_NyFileHandler::folderInItsPlace()
{
    const QString path = m_folder->filePath(u"folder"_s);
    QVERIFY(QDir().mkpath(path + u"/inside"_s));
    ignoreWarning(u"cannot write"_s, path);
    QVERIFY(!NyFileHandler::writeBinaryFile(QFileInfo(path), "a"));
    QVERIFY(QFileInfo(path + u"/inside"_s).isDir());
}

void tst_NyFileHandler::noName()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot write "_s));
    QVERIFY(!NyFileHandler::writeBinaryFile(QFileInfo(), "a"));
}

void tst_NyFileHandler::fullDiskKeepsTheOldFile_data()
{
    QTest::addColumn<qint64>("left");
    QTest::addColumn<int>("size");

    QTest::newRow("nothing left, small file") << qint64(0) << 100;
    QTest::newRow("nothing left, large file") << qint64(0) << 100'000;
    QTest::newRow("one block left, two needed") << qint64(4096) << 5000;
    QTest::newRow("some blocks left, more needed") << qint64(5 * 4096) << 100'000;
}

void tst_NyFileHandler::fullDiskKeepsTheOldFile()
{
    QFETCH(qint64, left);
    QFETCH(int, size);
    NySmallDisk disk;
    if (!disk.isMounted())
        QSKIP("mounting is not allowed here");
    const QString path = disk.filePath(u"file"_s);
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), "old"));
    QVERIFY(disk.fill(left));
    ignoreWarning(u"cannot write"_s, path);
    QString reason;
    QVERIFY(!NyFileHandler::writeBinaryFile(QFileInfo(path), QByteArray(size, 'n'), &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(contentOf(path), "old");
    QCOMPARE(QDir(disk.path()).entryList(QDir::Files).size(), 2);
    QVERIFY(disk.clear());
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(path), QByteArray(size, 'n')));
    QCOMPARE(contentOf(path), QByteArray(size, 'n'));
}

void tst_NyFileHandler::deletesFilesNotFolders()
{
    const QString file = m_folder->filePath(u"file"_s);
    const QString folder = m_folder->filePath(u"folder"_s);
    const QString inside = m_folder->filePath(u"folder/inside"_s);
    const QString link = m_folder->filePath(u"link to folder"_s);
    const QString dangling = m_folder->filePath(u"link to nothing"_s);
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(file), "a"));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(inside), "a"));
    QVERIFY(QFile::link(folder, link));
    QVERIFY(QFile::link(m_folder->filePath(u"nowhere"_s), dangling));
    QVERIFY(NyFileHandler::deleteFiles({QFileInfo(file), QFileInfo(folder), QFileInfo(link), QFileInfo(dangling)}));
    QVERIFY(!QFile::exists(file));
    QVERIFY(QFile::exists(inside));
    QVERIFY(!QFileInfo(link).isSymLink());
    QVERIFY(!QFileInfo(dangling).isSymLink());
}

void tst_NyFileHandler::deletesHostileNames()
{
    QFileInfoList files;
    for (const QString &name : hostileNames) {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        files.append(QFileInfo(file));
    }
    QVERIFY(NyFileHandler::deleteFiles(files));
    QVERIFY(QDir(m_folder->path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void tst_NyFileHandler::missingFilesAreNoFailure()
{
    QVERIFY(NyFileHandler::deleteFiles({}));
    QVERIFY(NyFileHandler::deleteFiles({QFileInfo(m_folder->filePath(u"not there"_s))}));
}

void tst_NyFileHandler::fileThatCannotBeDeleted()
{
    // A file that something is mounted upon cannot be deleted, not even by root.
    const QString busy = m_folder->filePath(u"busy"_s);
    const QString other = m_folder->filePath(u"other"_s);
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(busy), "a"));
    QVERIFY(NyFileHandler::writeBinaryFile(QFileInfo(other), "b"));
    const QByteArray name = QFile::encodeName(busy);
    if (::mount(name.constData(), name.constData(), nullptr, MS_BIND, nullptr) != 0)
        QSKIP("mounting is not allowed here");
    ignoreWarning(u"cannot delete"_s, busy);
    const bool allGone = NyFileHandler::deleteFiles({QFileInfo(busy), QFileInfo(other)});
    ::umount2(name.constData(), MNT_DETACH);
    QVERIFY(!allGone);
    QVERIFY(QFile::exists(busy));
    QVERIFY(!QFile::exists(other));
}

QTEST_GUILESS_MAIN(tst_NyFileHandler)
#include "tst_NyFileHandler.moc"

#include <QTest>

#include <unistd.h>

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyFotoBuilder.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyFotoBuilder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void folderAndSubfolders();
    void onlyPhotos();
    void ignorableFolders();
    void linksAndLoops();
    void oneFile();
    void otherUrls();
    void hostileNames();
    void invalidUtf8();
    void unreadableFolder();
    void deepTree();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void make(const QString &name) const
    {
        QDir().mkpath(QFileInfo(path(name)).absolutePath());
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QStringList found(const QString &folder = u""_s) const
    {
        QStringList names;
        const NyFotoList list = NyFotoBuilder::instance().fotosFromUrl(QUrl::fromLocalFile(path(folder)));
        for (const NyFoto &foto : list)
            names.append(QDir(m_folder->path()).relativeFilePath(foto.location()));
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyFotoBuilder::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_NyFotoBuilder::folderAndSubfolders()
{
    for (const QString &name :
        {u"b.jpg"_s, u"a.jpg"_s, u"Tag 2/1.jpg"_s, u"Tag 1/z.jpg"_s, u"Tag 1/RAW/1.nef"_s, u"Tag 1/a.jpg"_s, u"leer/lies.txt"_s})
        make(name);
    QCOMPARE(found(), QStringList({u"a.jpg"_s, u"b.jpg"_s, u"Tag 1/a.jpg"_s, u"Tag 1/z.jpg"_s, u"Tag 1/RAW/1.nef"_s, u"Tag 2/1.jpg"_s}));
    QCOMPARE(found(u"Tag 1"_s), QStringList({u"Tag 1/a.jpg"_s, u"Tag 1/z.jpg"_s, u"Tag 1/RAW/1.nef"_s}));
    QVERIFY(found(u"leer"_s).isEmpty());
}

void tst_NyFotoBuilder::onlyPhotos()
{
    for (const QString &name :
        {u"a.JPG"_s, u"b.HeIc"_s, u"c.mp4"_s, u"d.txt"_s, u"e.jpg.part"_s, u".verborgen.jpg"_s, u"jpg"_s, u"f.svg"_s})
        make(name);
    QDir().mkpath(path(u"ordner.jpg"_s));
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe.jpg"_s)).constData(), 0600), 0);
    QCOMPARE(found(), QStringList({u"a.JPG"_s, u"b.HeIc"_s}));
}

void tst_NyFotoBuilder::ignorableFolders()
{
    for (const QString &name : {u"a.jpg"_s, u".versteckt/b.jpg"_s, u"@eaDir/c.jpg"_s, u"$RECYCLE.BIN/d.jpg"_s, u"stumm/e.jpg"_s,
             u"stumm/.nomedia"_s, u"Screenshots/f.jpg"_s, u"laut/g.jpg"_s})
        make(name);
    QCOMPARE(found(), QStringList({u"a.jpg"_s, u"laut/g.jpg"_s}));
    // Whoever asks for such a folder itself gets it.
    QCOMPARE(found(u"Screenshots"_s), QStringList({u"Screenshots/f.jpg"_s}));
}

void tst_NyFotoBuilder::linksAndLoops()
{
    make(u"a.jpg"_s);
    make(u"eins/b.jpg"_s);
    QVERIFY(QFile::link(path(u""_s), path(u"eins/hinauf"_s)));
    QVERIFY(QFile::link(path(u"eins"_s), path(u"zwei"_s)));
    QVERIFY(QFile::link(path(u"a.jpg"_s), path(u"eins/link.jpg"_s)));
    QVERIFY(QFile::link(path(u"fort.jpg"_s), path(u"eins/tot.jpg"_s)));
    QVERIFY(QFile::link(path(u"selbst"_s), path(u"selbst"_s)));
    QCOMPARE(found(), QStringList({u"a.jpg"_s, u"eins/b.jpg"_s, u"eins/link.jpg"_s}));
    QCOMPARE(found(u"zwei"_s), QStringList({u"zwei/b.jpg"_s, u"zwei/link.jpg"_s, u"zwei/hinauf/a.jpg"_s}));
}

void tst_NyFotoBuilder::oneFile()
{
    make(u"a.jpg"_s);
    make(u"a.txt"_s);
    QCOMPARE(found(u"a.jpg"_s), QStringList({u"a.jpg"_s}));
    QVERIFY(found(u"a.txt"_s).isEmpty());
}

void tst_NyFotoBuilder::otherUrls()
{
    NyFotoBuilder builder;
    QVERIFY(builder.fotosFromUrl(QUrl()).isEmpty());
    QVERIFY(builder.fotosFromUrl(QUrl::fromLocalFile(QString())).isEmpty());
    QVERIFY(builder.fotosFromUrl(QUrl(u"https://example.org/a.jpg"_s)).isEmpty());
    QVERIFY(builder.fotosFromUrl(QUrl(u"photokit:album/1"_s)).isEmpty());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the folder .*fehlt"_s));
    QVERIFY(found(u"fehlt"_s).isEmpty());
}

void tst_NyFotoBuilder::hostileNames()
{
    const QStringList names{
        u" a .jpg"_s, u"100%25.jpg"_s, u"a\nb.jpg"_s, u"a\u0308.jpg"_s, u"x:#?.jpg"_s, u"\u00e4.jpg"_s, u"\U0001F389.jpg"_s};
    for (const QString &name : names) {
        make(name);
        make(u"unter\n%41#/"_s + name);
    }
    QStringList expected = names;
    for (const QString &name : names)
        expected.append(u"unter\n%41#/"_s + name);
    QCOMPARE(found(), expected);
    QVERIFY(!found(u"unter\n%41#"_s).isEmpty());
}

void tst_NyFotoBuilder::invalidUtf8()
{
    make(u"a.jpg"_s);
    const QByteArray native = QFile::encodeName(m_folder->path()) + "/caf\xe9.jpg";
    FILE *file = ::fopen(native.constData(), "w");
    if (!file)
        QSKIP("the file system refuses such names");
    ::fclose(file);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no valid UTF-8 and is left out: \"caf%E9.jpg\""_s));
    QCOMPARE(found(), QStringList({u"a.jpg"_s}));
    QCOMPARE(found(), QStringList({u"a.jpg"_s}));
    // Qt cannot see it, so it could not clean up either.
    QCOMPARE(::unlink(native.constData()), 0);
}

void tst_NyFotoBuilder::unreadableFolder()
{
    // Permissions do not stop root, who becomes somebody else for a moment; the folders above must let that user pass.
    const bool isRoot = ::geteuid() == 0;
    if (isRoot) {
        m_folder = std::make_unique<QTemporaryDir>(u"/tmp/tst_NyFotoBuilder-XXXXXX"_s);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
    }
    make(u"a.jpg"_s);
    make(u"zu/b.jpg"_s);
    QCOMPARE(::chmod(QFile::encodeName(path(u"zu"_s)).constData(), 0), 0);
    QCOMPARE(isRoot ? ::seteuid(65534) : 0, 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the folder .*zu"_s));
    const QStringList names = found();
    // Told once: a service walks the same folders again and again.
    const QStringList namesAgain = found();
    QCOMPARE(isRoot ? ::seteuid(0) : 0, 0);
    QCOMPARE(::chmod(QFile::encodeName(path(u"zu"_s)).constData(), 0755), 0);
    QCOMPARE(names, QStringList({u"a.jpg"_s}));
    QCOMPARE(namesAgain, names);
}

void tst_NyFotoBuilder::deepTree()
{
    QString folder;
    for (int i = 0; i < 300; ++i)
        folder += u"abc/"_s;
    make(folder + u"tief.jpg"_s);
    QCOMPARE(found(), QStringList({folder + u"tief.jpg"_s}));
}

QTEST_GUILESS_MAIN(tst_NyFotoBuilder)
#include "tst_NyFotoBuilder.moc"

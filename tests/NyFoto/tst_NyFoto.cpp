#include <QTest>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <NyFoto.h>
#include <NyFotoList.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyFoto : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void null();
    void localPaths_data();
    void localPaths();
    void everyAsciiLetter();
    void filesOnDisk();
    void relativeAndUncleanPaths();
    void urls_data();
    void urls();
    void invalidUtf8InUrl();
    void photokit();
    void lists();
    void listsKeepOrderAndDuplicates();
};

void tst_NyFoto::null()
{
    QVERIFY(NyFoto().isNull());
    QVERIFY(NyFoto(QFileInfo()).isNull());
    QVERIFY(NyFoto(QUrl()).isNull());
    QVERIFY(NyFoto::fromUrlString(QString()).isNull());
    QVERIFY(NyFoto() == NyFoto(QUrl()));
    QCOMPARE(NyFoto().url(), QUrl());
    QVERIFY(NyFoto().localFileInfo().filePath().isEmpty());
    QVERIFY(!NyFoto().isLocalFile());
}

void tst_NyFoto::localPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("plain") << u"/home/anna/Bilder/IMG_0001.JPG"_s;
    QTest::newRow("blanks") << u"/home/anna/ Urlaub am Meer / bild 1 .jpg"_s;
    QTest::newRow("newline and tab") << u"/home/anna/zwei\nZeilen\tTab.jpg"_s;
    QTest::newRow("carriage return") << u"/home/anna/a\r.jpg"_s;
    QTest::newRow("percent") << u"/home/anna/100%/%41%2F%00.jpg"_s;
    QTest::newRow("hash") << u"/home/anna/#1/bild#2.jpg"_s;
    QTest::newRow("question mark") << u"/home/anna/wer?/was?a=b&c.jpg"_s;
    QTest::newRow("colon") << u"/home/anna/12:30:05/c:bild.jpg"_s;
    QTest::newRow("quotes") << u"/home/anna/\"Wir\" & 'Ihr'/a.jpg"_s;
    QTest::newRow("backslash and brackets") << u"/home/anna/a\\b[1]{2}<3>|^`.jpg"_s;
    QTest::newRow("plus and semicolon") << u"/home/anna/a+b;c=d,e@f!g$h*(i)~.jpg"_s;
    QTest::newRow("composed umlauts") << u"/home/anna/M\u00fcnchen/\u00e4.jpg"_s;
    QTest::newRow("decomposed umlauts") << u"/home/anna/Mu\u0308nchen/a\u0308.jpg"_s;
    QTest::newRow("emoji") << u"/home/anna/\U0001F389 Party/\U0001F468\u200D\U0001F469\u200D\U0001F467.jpg"_s;
    QTest::newRow("chinese") << u"/home/anna/2024\u5e74/\u7167\u7247.jpg"_s;
    QTest::newRow("replacement character") << u"/home/anna/\ufffd.jpg"_s;
    QTest::newRow("looks like a url") << u"/home/anna/file:/http:/x.jpg"_s;
    QTest::newRow("dots") << u"/home/anna/.../..a/b.../.jpg"_s;
    QTest::newRow("root") << u"/a.jpg"_s;
}

void tst_NyFoto::localPaths()
{
    QFETCH(QString, path);
    const NyFoto foto{QFileInfo(path)};
    QVERIFY(foto.isLocalFile());
    QCOMPARE(foto.localFileInfo().filePath(), path);
    QCOMPARE(foto.localFileInfo().absoluteFilePath(), path);
    QCOMPARE(foto.url(), QUrl::fromLocalFile(path));
    QCOMPARE(foto.url().toLocalFile(), path);

    const QString text = foto.urlString();
    QCOMPARE(text, QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
    for (const QChar letter : text)
        QVERIFY(letter.unicode() > 0x20 && letter.unicode() < 0x7f);
    QCOMPARE(NyFoto::fromUrlString(text), foto);
    QCOMPARE(NyFoto::fromUrlString(text).localFileInfo().filePath(), path);
    QCOMPARE(NyFoto(QUrl::fromLocalFile(path)), foto);
    QCOMPARE(NyFoto(QUrl(text)), foto);
}

void tst_NyFoto::everyAsciiLetter()
{
    for (char16_t letter = 1; letter < 0x80; ++letter) {
        if (letter == u'/')
            continue;
        const QString path = u"/x/a"_s + QChar(letter) + u"b.jpg"_s;
        const NyFoto foto{QFileInfo(path)};
        QCOMPARE(foto.urlString(), QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
        QCOMPARE(NyFoto::fromUrlString(foto.urlString()).localFileInfo().filePath(), path);
    }
}

void tst_NyFoto::filesOnDisk()
{
    const QTemporaryDir folder;
    for (const QString &name : {u"a%20b.jpg"_s, u"u\u0308.jpg"_s, u"\u00fc.jpg"_s, u"neue\nZeile?#.jpg"_s, u" .jpg "_s}) {
        const QString path = folder.filePath(name);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QVERIFY(NyFoto::fromUrlString(NyFoto(QFileInfo(path)).urlString()).localFileInfo().exists());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 5);
}

void tst_NyFoto::relativeAndUncleanPaths()
{
    const QString here = QDir::currentPath();
    QCOMPARE(NyFoto(QFileInfo(u"a.jpg"_s)).localFileInfo().filePath(), here + u"/a.jpg"_s);
    QCOMPARE(NyFoto(QFileInfo(u"/x/../y//z/./a.jpg"_s)).location(), u"/y/z/a.jpg"_s);
    QCOMPARE(NyFoto(QFileInfo(u"/x/y/"_s)).location(), QFileInfo(u"/x/y/"_s).absoluteFilePath());
    QCOMPARE(NyFoto(QUrl(u"/x/a b.jpg"_s)).location(), u"/x/a b.jpg"_s);
}

void tst_NyFoto::urls_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::newRow("web") << QUrl(u"https://example.org/a%20b.jpg?x=1#y"_s);
    QTest::newRow("photokit") << QUrl(u"photokit:asset/1"_s);
    QTest::newRow("photokitfs") << QUrl(u"photokitfs:///asset/1"_s);
    QTest::newRow("file on another host") << QUrl(u"file://server/share/a.jpg"_s);
    QTest::newRow("file with a query") << QUrl(u"file:///a.jpg?x"_s);
}

void tst_NyFoto::urls()
{
    QFETCH(QUrl, url);
    const NyFoto foto(url);
    QVERIFY(!foto.isNull());
    QVERIFY(!foto.isLocalFile());
    QCOMPARE(foto.url(), url);
    QCOMPARE(NyFoto::fromUrlString(foto.urlString()), foto);
}

void tst_NyFoto::invalidUtf8InUrl()
{
    // The name's bytes stay in the URL, though no QString can spell them.
    const QUrl url = QUrl::fromEncoded("file:///fotos/caf%E9.jpg");
    const NyFoto foto(url);
    QVERIFY(!foto.isLocalFile());
    QCOMPARE(foto.urlString(), u"file:///fotos/caf%E9.jpg"_s);
    QCOMPARE(foto.url().toEncoded(), QByteArray("file:///fotos/caf%E9.jpg"));
    QCOMPARE(NyFoto::fromUrlString(foto.urlString()), foto);
    QVERIFY(NyFoto::fromUrlString(u"file:///a%00b.jpg"_s).urlString() == u"file:///a%00b.jpg"_s);
    QVERIFY(NyFoto::fromUrlString(u"file:///a%2Fb.jpg"_s).urlString() == u"file:///a%2Fb.jpg"_s);
    QVERIFY(NyFoto::fromUrlString(u"file:///a%"_s).urlString() == u"file:///a%"_s);
    QVERIFY(NyFoto::fromUrlString(u"file:///a%G1"_s).urlString() == u"file:///a%G1"_s);
}

void tst_NyFoto::photokit()
{
    const NyFoto foto(QFileInfo(u"photokit:asset/1"_s));
    QCOMPARE(foto.url(), QUrl(u"photokit:asset/1"_s));
    QCOMPARE(foto.localFileInfo().filePath(), u"photokit:asset/1"_s);
}

void tst_NyFoto::lists()
{
    const QList<QFileInfo> files{QFileInfo(u"/a/1.jpg"_s), QFileInfo(u"/a/2 2.jpg"_s)};
    const NyFotoList list(files);
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.toLocalFileInfoList(), files);
    QCOMPARE(list.toUrlStringList(), QStringList({u"file:///a/1.jpg"_s, u"file:///a/2%202.jpg"_s}));
    QCOMPARE(list.toUrlList(), QList<QUrl>({QUrl::fromLocalFile(u"/a/1.jpg"_s), QUrl::fromLocalFile(u"/a/2 2.jpg"_s)}));
    QCOMPARE(NyFotoList(list.toUrlList()), list);
    QVERIFY(NyFotoList().isEmpty());
    QCOMPARE(NyFotoList(QList<QUrl>()), NyFotoList());
    int count = 0;
    for (const NyFoto &foto : list)
        count += foto.isLocalFile() ? 1 : 0;
    QCOMPARE(count, 2);
}

void tst_NyFoto::listsKeepOrderAndDuplicates()
{
    NyFotoList list(QList<QFileInfo>{QFileInfo(u"/b"_s), QFileInfo(u"/a"_s), QFileInfo(u"/b"_s)});
    QCOMPARE(list.size(), 3);
    QCOMPARE(list.toUrlStringList(), QStringList({u"file:///b"_s, u"file:///a"_s, u"file:///b"_s}));
    NyFotoList longer = list;
    longer.append(NyFoto(QFileInfo(u"/c"_s)));
    QVERIFY(!(longer == list));
    list.append(NyFotoList{NyFoto(QFileInfo(u"/c"_s))});
    QCOMPARE(longer, list);
    list.clear();
    QVERIFY(list.isEmpty());
}

QTEST_GUILESS_MAIN(tst_NyFoto)
#include "tst_NyFoto.moc"

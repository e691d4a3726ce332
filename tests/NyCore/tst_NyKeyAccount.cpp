#include <QTest>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <NyKeyAccount.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyKeyAccount : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void builtIn();
    void files_data();
    void files();
    void unreadableFile();

private:
    QString path() const { return QDir::homePath() + u"/.config/VELMORA/installation.xml"_s; }
};

void tst_NyKeyAccount::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    QVERIFY(QDir().mkpath(QFileInfo(path()).absolutePath()));
}

void tst_NyKeyAccount::cleanup()
{
    QFile::remove(path());
}

void tst_NyKeyAccount::builtIn()
{
    const NyKeyAccount account;
    QCOMPARE(account.keyAccountId().id(), 1);
    QCOMPARE(account.keyAccountId().toString(), u"1"_s);
    QCOMPARE(account.name(), u"VELMORA"_s);
    QVERIFY(!account.isTestClient());
    QVERIFY(!account.keyAccountId().isTestClient());
    QVERIFY(account.keyAccountId() == NyKeyAccountId(1));
}

void tst_NyKeyAccount::files_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("testClient");
    QTest::addColumn<QString>("warning");

    QTest::newRow("all facts")
        << "<installation><keyAccount id=\"7320\" name=\"M\xc3\xbcller &amp; Sohn\" testClient=\"Yes\"/></installation>"_ba << 7320
        << u"M\u00fcller & Sohn"_s << true << QString();
    QTest::newRow("one fact") << "<installation><keyAccount id=\" 12 \"/></installation>"_ba << 12 << u"VELMORA"_s << false << QString();
    QTest::newRow("another root") << "<x><y><keyAccount id=\"3\"/></y></x>"_ba << 3 << u"VELMORA"_s << false << QString();
    QTest::newRow("first one counts") << "<x><keyAccount id=\"3\"/><keyAccount id=\"4\" name=\"no\"/></x>"_ba << 3 << u"VELMORA"_s << false
                                      << QString();
    QTest::newRow("no facts") << "<installation/>"_ba << 1 << u"VELMORA"_s << false << QString();
    QTest::newRow("no number") << "<x><keyAccount id=\"many\" name=\"n\"/></x>"_ba << 1 << u"n"_s << false
                               << u"^no number in .*installation.xml keyAccount id .*many"_s;
    QTest::newRow("no flag") << "<x><keyAccount testClient=\"perhaps\"/></x>"_ba << 1 << u"VELMORA"_s << false
                             << u"^no yes or no in .*installation.xml keyAccount testClient perhaps"_s;
    QTest::newRow("cut off") << "<installation>\n  <keyAccount id=\"7\"/>\n"_ba << 1 << u"VELMORA"_s << false
                             << u"^cannot parse .*installation.xml line 3 column 0 "_s;
    QTest::newRow("empty") << ""_ba << 1 << u"VELMORA"_s << false << u"^cannot parse .*installation.xml line 1 column 0 "_s;
    QTest::newRow("NUL bytes") << QByteArray(512, '\0') << 1 << u"VELMORA"_s << false
                               << u"^cannot parse .*installation.xml line 1 column "_s;
}

void tst_NyKeyAccount::files()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, warning);
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    const NyKeyAccount account;
    QTEST(account.keyAccountId().id(), "id");
    QTEST(account.name(), "name");
    QTEST(account.isTestClient(), "testClient");
}

void tst_NyKeyAccount::unreadableFile()
{
    // Reading the memory of a process at its beginning fails for everybody.
    QVERIFY(QFile::link(u"/proc/self/mem"_s, path()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot (read|parse) .*installation.xml"_s));
    QCOMPARE(NyKeyAccount().keyAccountId().id(), 1);
}

QTEST_GUILESS_MAIN(tst_NyKeyAccount)
#include "tst_NyKeyAccount.moc"

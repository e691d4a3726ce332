#include <QTest>

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyJsonParser.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyJsonParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void documents_data();
    void documents();
    void missingFile();
    void folder();
    void menu_data();
    void menu();
};

void tst_NyJsonParser::documents_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isNull");
    QTest::addColumn<bool>("isArray");

    QTest::newRow("object") << "{\"headline\":\"Sommer\"}"_ba << false << false;
    QTest::newRow("array") << "[1,2]"_ba << false << true;
    QTest::newRow("empty object") << "{}"_ba << false << false;
    QTest::newRow("with byte order mark") << "\xef\xbb\xbf{}"_ba << false << false;
    QTest::newRow("empty") << ""_ba << true << false;
    QTest::newRow("blank") << " \n"_ba << true << false;
    QTest::newRow("cut off") << "{\"headline\":\"Som"_ba << true << false;
    QTest::newRow("two documents") << "{}{}"_ba << true << false;
    QTest::newRow("NUL bytes") << QByteArray(100, '\0') << true << false;
    QTest::newRow("no UTF-8") << "{\"a\":\"\xff\"}"_ba << true << false;
    QTest::newRow("nested too deeply") << QByteArray(5000, '[') + QByteArray(5000, ']') << true << false;
    QTest::newRow("a bare number") << "12"_ba << true << false;
}

void tst_NyJsonParser::documents()
{
    QFETCH(QByteArray, content);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"a %1 b.nqp.json"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    const QJsonDocument document = NyJsonParser::loadDocument(QFileInfo(file));
    QTEST(document.isNull(), "isNull");
    QTEST(document.isArray(), "isArray");
}

void tst_NyJsonParser::missingFile()
{
    QVERIFY(NyJsonParser::loadDocument(QFileInfo(u"/nowhere/a.json"_s)).isNull());
    QVERIFY(NyJsonParser::loadDocument(QFileInfo()).isNull());
}

void tst_NyJsonParser::folder()
{
    QVERIFY(NyJsonParser::loadDocument(QFileInfo(u"/usr"_s)).isNull());
}

void tst_NyJsonParser::menu_data()
{
    QTest::addColumn<QString>("argument");
    for (const QString &argument : {u"2026-07-02.nqp"_s, u"a b:c \"d\" \u00e4.nqp"_s, u""_s, u"%1"_s})
        QTest::newRow(qPrintable(argument)) << argument;
}

void tst_NyJsonParser::menu()
{
    QFETCH(QString, argument);
    const QJsonArray menu = NyJsonParser::createMenuJson(argument);
    QCOMPARE(menu.size(), 2);
    QCOMPARE(menu.at(0).toObject().value(u"action"_s).toString(), u"open:"_s + argument);
    QCOMPARE(menu.at(1).toObject().value(u"action"_s).toString(), u"delete:"_s + argument);
    QCOMPARE(menu.at(0).toObject().value(u"title"_s).toString(), u"Vorschlag \u00f6ffnen"_s);
    QCOMPARE(menu.at(1).toObject().value(u"title"_s).toString(), u"Vorschlag l\u00f6schen"_s);
    // It survives the way through a file.
    QCOMPARE(QJsonDocument::fromJson(QJsonDocument(menu).toJson()).array(), menu);
}

QTEST_GUILESS_MAIN(tst_NyJsonParser)
#include "tst_NyJsonParser.moc"

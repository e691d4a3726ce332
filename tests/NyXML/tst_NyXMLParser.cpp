#include <QTest>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyXMLParser.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

QDomElement element(const QString &attributes)
{
    QDomDocument document;
    document.setContent(u"<e %1/>"_s.arg(attributes));
    return document.documentElement();
}

} // namespace

class tst_NyXMLParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void texts();
    void flags_data();
    void flags();
    void numbers_data();
    void numbers();
    void nullElement();
    void goodFile();
    void brokenFiles_data();
    void brokenFiles();
    void filesThatCannotBeRead_data();
    void filesThatCannotBeRead();
};

void tst_NyXMLParser::texts()
{
    const QDomElement e = element(u"a=' x &amp; y ' empty='' blank='  '"_s);
    QCOMPARE(NyXMLParser::attribute(e, u"a"_s, u"def"_s, true), u"x & y"_s);
    QCOMPARE(NyXMLParser::attribute(e, u"a"_s, u"def"_s, false), u" x & y "_s);
    QCOMPARE(NyXMLParser::attribute(e, u"empty"_s, u"def"_s, true), u""_s);
    QCOMPARE(NyXMLParser::attribute(e, u"blank"_s, u"def"_s, true), u""_s);
    QCOMPARE(NyXMLParser::attribute(e, u"missing"_s, u" def "_s, true), u" def "_s);
    QCOMPARE(NyXMLParser::attribute(e, u"A"_s, u"def"_s, true), u"def"_s);
}

void tst_NyXMLParser::flags_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    for (const QString &text : {u"true"_s, u"1"_s, u"yes"_s, u"on"_s, u"TRUE"_s, u"Yes"_s, u"oN"_s, u" true "_s})
        QTest::newRow(qPrintable(text)) << text << 1;
    for (const QString &text : {u"false"_s, u"0"_s, u"no"_s, u"off"_s, u"False"_s, u"NO"_s, u"oFf"_s, u" 0 "_s})
        QTest::newRow(qPrintable(text)) << text << 0;
    for (const QString &text : {u""_s, u"2"_s, u"-1"_s, u"ja"_s, u"truee"_s, u"t"_s, u"0.0"_s})
        QTest::newRow(qPrintable(u"neither "_s + text)) << text << -1;
}

void tst_NyXMLParser::flags()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    const QDomElement e = element(u"flag='%1'"_s.arg(text));
    for (const bool defaultValue : {true, false}) {
        if (value < 0)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"element e attribute flag is no yes or no: "_s));
        QCOMPARE(NyXMLParser::boolAttribute(e, u"flag"_s, defaultValue), value < 0 ? defaultValue : value == 1);
        QCOMPARE(NyXMLParser::boolAttribute(e, u"missing"_s, defaultValue), defaultValue);
    }
}

void tst_NyXMLParser::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("value");

    QTest::newRow("zero") << u"0"_s << true << 0;
    QTest::newRow("positive") << u"1000"_s << true << 1000;
    QTest::newRow("negative") << u"-5"_s << true << -5;
    QTest::newRow("blanks") << u" 12 "_s << true << 12;
    QTest::newRow("leading zeros are not octal") << u"010"_s << true << 10;
    QTest::newRow("largest") << u"2147483647"_s << true << 2147483647;
    QTest::newRow("smallest") << u"-2147483648"_s << true << std::numeric_limits<int>::min();
    QTest::newRow("too large") << u"2147483648"_s << false << 0;
    QTest::newRow("empty") << u""_s << false << 0;
    QTest::newRow("word") << u"many"_s << false << 0;
    QTest::newRow("unit") << u"30s"_s << false << 0;
    QTest::newRow("fraction") << u"1.5"_s << false << 0;
    QTest::newRow("hexadecimal") << u"0x10"_s << false << 0;
    QTest::newRow("grouped") << u"1,000"_s << false << 0;
}

void tst_NyXMLParser::numbers()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, value);
    const QDomElement e = element(u"n='%1'"_s.arg(text));
    if (!isNumber)
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"element e attribute n is no number: "_s + QRegularExpression::escape(text)));
    QCOMPARE(NyXMLParser::intAttribute(e, u"n"_s, 77), isNumber ? value : 77);
    QCOMPARE(NyXMLParser::intAttribute(e, u"missing"_s, 77), 77);
}

void tst_NyXMLParser::nullElement()
{
    const QDomElement null;
    QCOMPARE(NyXMLParser::attribute(null, u"a"_s, u"def"_s, true), u"def"_s);
    QCOMPARE(NyXMLParser::boolAttribute(null, u"a"_s, true), true);
    QCOMPARE(NyXMLParser::intAttribute(null, u"a"_s, 3), 3);
}

void tst_NyXMLParser::goodFile()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"a \u00e4 %1.xml"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<?xml version='1.0' encoding='UTF-8'?><!-- c --><root><a x='\xc3\xa4'/></root>");
    file.close();
    const QDomDocument document = NyXMLParser::parseFile(file.fileName());
    QCOMPARE(document.documentElement().firstChildElement(u"a"_s).attribute(u"x"_s), u"\u00e4"_s);
}

void tst_NyXMLParser::brokenFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("place");

    QTest::newRow("empty") << ""_ba << u"line 1 column "_s;
    QTest::newRow("text") << "hello"_ba << u"line 1 column "_s;
    QTest::newRow("cut off") << "<root>\n  <a x='1'"_ba << u"line 2 column "_s;
    QTest::newRow("wrong end") << "<root>\n\n<a></b></root>"_ba << u"line 3 column "_s;
    QTest::newRow("attribute twice") << "<root a='1' a='2'/>"_ba << u"line 1 column "_s;
    QTest::newRow("two roots") << "<a/>\n<b/>"_ba << u"line 2 column "_s;
    QTest::newRow("NUL bytes") << QByteArray(4096, '\0') << u"line 1 column "_s;
    QTest::newRow("unknown entity") << "<root>&nothing;</root>"_ba << u"line 1 column "_s;
    QTest::newRow("wrong encoding") << "<?xml version='1.0' encoding='UTF-8'?><root a='\xff'/>"_ba << u"line 1 column "_s;
    QByteArray bomb = "<!DOCTYPE r [<!ENTITY a 'aaaaaaaaaa'>";
    for (char c = 'b'; c <= 'j'; ++c) {
        bomb += QByteArray("<!ENTITY ") + c + " '";
        for (int i = 0; i < 10; ++i)
            bomb += QByteArray("&") + static_cast<char>(c - 1) + ';';
        bomb += "'>";
    }
    bomb += "]><r>&j;</r>";
    QTest::newRow("entities within entities") << bomb << u"line 1 column "_s;
    QByteArray deep;
    for (int i = 0; i < 300'000; ++i)
        deep += "<a>";
    for (int i = 0; i < 300'000; ++i)
        deep += "</a>";
    QTest::newRow("nested too deeply") << deep << u"line 1 column "_s;
    QTest::newRow("too large") << "<root>" + QByteArray(16 * 1024 * 1024, ' ') + "</root>" << u"line 1 column 1 too large"_s;
}

void tst_NyXMLParser::brokenFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, place);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"broken.xml"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    QTest::ignoreMessage(
        QtWarningMsg, QRegularExpression(u"^cannot parse "_s + QRegularExpression::escape(file.fileName()) + u' ' + place));
    QVERIFY(NyXMLParser::parseFile(file.fileName()).isNull());
}

void tst_NyXMLParser::filesThatCannotBeRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("not there") << u"/nowhere/a.xml"_s;
    QTest::newRow("folder") << u"/usr"_s;
    QTest::newRow("no path") << QString();
}

void tst_NyXMLParser::filesThatCannotBeRead()
{
    QFETCH(QString, path);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot read "_s + path));
    QVERIFY(NyXMLParser::parseFile(path).isNull());
}

QTEST_APPLESS_MAIN(tst_NyXMLParser)
#include "tst_NyXMLParser.moc"

#include <NyText.h>

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_NyText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parts_data();
    void parts();
    void turnsDirection();
};

void tst_NyText::parts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("beginning");
    QTest::addColumn<QString>("end");
    QTest::newRow("empty") << QString() << 3 << QString() << QString();
    QTest::newRow("nothing of it") << u"abc"_s << 0 << QString() << QString();
    QTest::newRow("shorter") << u"ab"_s << 3 << u"ab"_s << u"ab"_s;
    QTest::newRow("as long") << u"abc"_s << 3 << u"abc"_s << u"abc"_s;
    QTest::newRow("longer") << u"abcdef"_s << 3 << u"abc"_s << u"def"_s;
    QTest::newRow("between pairs") << u"\U0001F382\U0001F383\U0001F384"_s << 2 << u"\U0001F382"_s << u"\U0001F384"_s;
    QTest::newRow("inside pairs") << u"\U0001F382\U0001F383\U0001F384"_s << 3 << u"\U0001F382"_s << u"\U0001F384"_s;
    QTest::newRow("nothing but half a pair") << u"\U0001F382\U0001F383"_s << 1 << QString() << QString();
    // What was broken before stays.
    QTest::newRow("half a character, whole text") << QString(QChar(0xd83c)) << 1 << QString(QChar(0xd83c)) << QString(QChar(0xd83c));
}

void tst_NyText::parts()
{
    QFETCH(QString, text);
    QFETCH(int, length);
    QTEST(NyText::beginning(text, length), "beginning");
    QTEST(NyText::end(text, length), "end");
}

void tst_NyText::turnsDirection()
{
    QString turning;
    for (char32_t code = 0; code <= 0xffff; ++code) {
        if (NyText::turnsDirection(QChar(char16_t(code))))
            turning += QChar(char16_t(code));
    }
    QCOMPARE(turning, u"\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069"_s);
}

QTEST_APPLESS_MAIN(tst_NyText)
#include "tst_NyText.moc"

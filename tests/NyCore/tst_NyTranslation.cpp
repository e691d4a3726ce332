#include <QTest>

#include <QCoreApplication>
#include <QDate>

#include <NyTranslation.h>

using namespace Qt::Literals::StringLiterals;

/** Which language a user gets, and what is translated then. */
class tst_NyTranslation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void languages();
    void languageFor_data();
    void languageFor();
    void germanBeforeTheFirstInstall();
    void textsFollow();
    void datesFollow_data();
    void datesFollow();
    void qtTextsFollow();

private:
    static QString text() { return QCoreApplication::translate("NyJsonParser", "Vorschlag öffnen"); }
};

void tst_NyTranslation::cleanup()
{
    NyTranslation::install({u"C"_s});
}

void tst_NyTranslation::languages()
{
    const QStringList languages = NyTranslation::languages();
    QCOMPARE(languages.first(), u"de"_s);
    QVERIFY(languages.contains(u"en"_s));
    QCOMPARE(languages.count(u"de"_s), 1);
}

void tst_NyTranslation::languageFor_data()
{
    QTest::addColumn<QStringList>("user");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QStringList &user, const QString &expected) { QTest::newRow(name) << user << expected; };
    row("no language at all", {}, u"de"_s);
    row("C", {u"C"_s}, u"de"_s);
    row("German", {u"de-DE"_s, u"de-Latn-DE"_s, u"de"_s}, u"de"_s);
    row("Austrian", {u"de-AT"_s, u"de-Latn-AT"_s}, u"de"_s);
    row("British", {u"en-GB"_s, u"en-Latn-GB"_s}, u"en"_s);
    row("American", {u"en-US"_s, u"en-Latn-US"_s, u"en"_s}, u"en"_s);
    row("French", {u"fr-FR"_s, u"fr-Latn-FR"_s, u"fr"_s}, u"en"_s);
    row("French, then German", {u"fr"_s, u"fr-Latn-FR"_s, u"fr-FR"_s, u"de"_s, u"de-DE"_s, u"en"_s}, u"de"_s);
    row("French, then English, then German", {u"fr"_s, u"en"_s, u"de"_s}, u"en"_s);
    row("Swiss German", {u"gsw-CH"_s, u"gsw-Latn-CH"_s, u"gsw"_s}, u"de"_s);
    row("Low German", {u"nds-DE"_s}, u"de"_s);
    row("Dutch", {u"nl-NL"_s, u"nl"_s}, u"en"_s);
    row("a language whose name begins like German's", {u"deu-x"_s, u"den"_s}, u"en"_s);
    row("a language that Qt does not know", {u"zz-ZZ"_s, u"C"_s}, u"en"_s);
    row("a language that Qt does not know, then German", {u"xx"_s, u"C"_s, u"de"_s}, u"de"_s);
    row("with an underscore", {u"de_CH"_s}, u"de"_s);
    row("in capitals", {u"EN"_s}, u"en"_s);
    row("an empty one", {QString()}, u"en"_s);
}

void tst_NyTranslation::languageFor()
{
    QFETCH(QStringList, user);
    QTEST(NyTranslation::languageFor(user), "expected");
}

void tst_NyTranslation::germanBeforeTheFirstInstall()
{
    QCOMPARE(NyTranslation::locale().language(), QLocale::German);
    QCOMPARE(text(), u"Vorschlag öffnen"_s);
}

void tst_NyTranslation::textsFollow()
{
    QCOMPARE(NyTranslation::install({u"en-US"_s}), u"en"_s);
    QCOMPARE(text(), u"Open proposal"_s);
    QCOMPARE(NyTranslation::install({u"de-DE"_s}), u"de"_s);
    QCOMPARE(text(), u"Vorschlag öffnen"_s);
    QCOMPARE(NyTranslation::install({u"fr-FR"_s}), u"en"_s);
    QCOMPARE(text(), u"Open proposal"_s);
    QCOMPARE(NyTranslation::install({u"C"_s}), u"de"_s);
    QCOMPARE(text(), u"Vorschlag öffnen"_s);
}

void tst_NyTranslation::datesFollow_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("day");
    QTest::newRow("English") << u"en-GB"_s << u"Saturday, 4 July 2026"_s;
    QTest::newRow("German") << u"de-DE"_s << u"Samstag, 4 Juli 2026"_s;
    QTest::newRow("French") << u"fr-FR"_s << u"Saturday, 4 July 2026"_s;
    QTest::newRow("C") << u"C"_s << u"Samstag, 4 Juli 2026"_s;
}

void tst_NyTranslation::datesFollow()
{
    QFETCH(QString, user);
    NyTranslation::install({user});
    const QDate date(2026, 7, 4);
    QTEST(NyTranslation::locale().toString(date, u"dddd, d MMMM yyyy"_s), "day");
    // The surroundings of a test speak no language, so the default locale takes that of the texts.
    QTEST(QLocale().toString(date, u"dddd, d MMMM yyyy"_s), "day");
}

void tst_NyTranslation::qtTextsFollow()
{
    const auto yes = [] { return QCoreApplication::translate("QPlatformTheme", "&Yes"); };
    NyTranslation::install({u"en-US"_s});
    QCOMPARE(yes(), u"&Yes"_s);
    NyTranslation::install({u"de-DE"_s});
    QCOMPARE(yes(), u"&Ja"_s);
    NyTranslation::install({u"C"_s});
    QCOMPARE(yes(), u"&Ja"_s);
    NyTranslation::install({u"en-US"_s});
    QCOMPARE(yes(), u"&Yes"_s);
}

QTEST_GUILESS_MAIN(tst_NyTranslation)
#include "tst_NyTranslation.moc"

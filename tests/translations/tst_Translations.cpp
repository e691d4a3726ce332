#include "TranslationFile.h"

#include <NyTranslation.h>

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

using namespace Qt::Literals::StringLiterals;

/** Every text that people see exists in every language, and says there what the sources say. */
class tst_Translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faultsAreFound_data();
    void faultsAreFound();
    void differencesAreFound_data();
    void differencesAreFound();
    void complete_data() { languageRows(); }
    void complete();
    void upToDate_data() { languageRows(); }
    void upToDate();
    void embedded_data() { languageRows(); }
    void embedded();
    void noGermanInEnglish();
    void fileNameOfProposals_data() { languageRows(); }
    void fileNameOfProposals();

private:
    static QStringList languages() { return QString::fromLatin1(NY_LANGUAGES).split(u'|'); }
    static void languageRows();
    static TranslationFile file(const QString &language)
    {
        return TranslationFile::read(QStringLiteral(NY_TRANSLATIONS_FOLDER "/velmora_%1.ts").arg(language));
    }
    /** A file with one text. */
    static QByteArray content(const QString &source, const QString &translation, const QString &attributes);
};

#define VERIFY_NONE(faults)                                                                                                                \
    do {                                                                                                                                   \
        const QStringList list = (faults);                                                                                                 \
        QVERIFY2(list.isEmpty(), qPrintable(u"\n  "_s + list.join(u"\n  "_s)));                                                            \
    } while (false)

void tst_Translations::languageRows()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : languages())
        QTest::newRow(qPrintable(language)) << language;
}

QByteArray tst_Translations::content(const QString &source, const QString &translation, const QString &attributes)
{
    return u"<?xml version=\"1.0\" encoding=\"utf-8\"?><!DOCTYPE TS><TS version=\"2.1\" language=\"en\"><context><name>Window</name>"
           "<message><source>%1</source><translation%3>%2</translation></message></context></TS>"_s
               .arg(source.toHtmlEscaped(), translation.toHtmlEscaped(), attributes)
               .toUtf8();
}

void tst_Translations::faultsAreFound_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const QString &source, const QString &translation, const QString &fault) {
        QTest::newRow(name) << source << translation << QString() << fault;
    };
    row("good", u"&Öffnen: %1 von <b>%L2</b> …"_s, u"&Open: <b>%L2</b>, of which %1…"_s, QString());
    row("doubled ampersand", u"Rock && Pop"_s, u"Rock && Pop"_s, QString());
    row("date format", u"d. MMMM"_s, u"d MMMM"_s, QString());
    row("empty", u"Öffnen"_s, QString(), u"nothing"_s);
    row("blank", u"Öffnen"_s, u" "_s, u"nothing"_s);
    row("argument lost", u"%1 von %2"_s, u"%1"_s, u"other arguments"_s);
    row("another argument", u"%1 Fotos"_s, u"%2 photos"_s, u"other arguments"_s);
    row("number lost", u"%n Fotos"_s, u"photos"_s, u"other arguments"_s);
    row("tag lost", u"<b>Neu</b>"_s, u"<b>New"_s, u"other markup"_s);
    row("access key lost", u"&Datei"_s, u"File"_s, u"another number of access keys"_s);
    row("access key too many", u"Datei"_s, u"&File"_s, u"another number of access keys"_s);
    row("two access keys", u"&Datei"_s, u"&Fi&le"_s, u"another number of access keys"_s);
    row("line lost", u"eins\nzwei"_s, u"one two"_s, u"another number of lines"_s);
    row("full stop lost", u"Das fehlt."_s, u"That is missing"_s, u"another ending"_s);
    row("dots lost", u"Öffnen …"_s, u"Open"_s, u"another ending"_s);
    row("blank at the beginning", u" und"_s, u"and"_s, u"other blanks at the beginning"_s);
    QTest::newRow("unfinished") << u"Öffnen"_s << u"Open"_s << u" type=\"unfinished\""_s << u"unfinished"_s;
    QTest::newRow("vanished") << u"Öffnen"_s << u"Open"_s << u" type=\"vanished\""_s << u"vanished"_s;
}

void tst_Translations::faultsAreFound()
{
    QFETCH(QString, source);
    QFETCH(QString, translation);
    QFETCH(QString, attributes);
    QFETCH(QString, fault);
    TranslationFile one = TranslationFile::parse(content(source, translation, attributes));
    QCOMPARE(one.error, QString());
    QCOMPARE(one.texts.size(), 1);
    if (QLatin1String(QTest::currentDataTag()) == "date format"_L1)
        one.texts.first().comment = u"date, as in QDate::toString()"_s;
    const QStringList faults = one.faults();
    QCOMPARE(faults.size(), fault.isEmpty() ? 0 : 1);
    QVERIFY2(fault.isEmpty() || faults.first().contains(fault), qPrintable(faults.join(u'\n')));
}

void tst_Translations::differencesAreFound_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("same") << u"Öffnen"_s << QStringList();
    QTest::newRow("changed") << u"Öffne"_s << QStringList{u"missing: Window: \"Öffne\""_s, u"gone from the sources: Window: \"Öffnen\""_s};
}

void tst_Translations::differencesAreFound()
{
    QFETCH(QString, current);
    const TranslationFile kept = TranslationFile::parse(content(u"Öffnen"_s, u"Open"_s, QString()));
    const TranslationFile made = TranslationFile::parse(content(current, QString(), u" type=\"unfinished\""_s));
    QTEST(kept.differences(made), "expected");
}

void tst_Translations::complete()
{
    QFETCH(QString, language);
    const TranslationFile texts = file(language);
    QCOMPARE(texts.error, QString());
    QCOMPARE(texts.language, language);
    QCOMPARE(texts.sourceLanguage, u"de_DE"_s);
    QVERIFY(texts.texts.size() > 100);
    VERIFY_NONE(texts.faults());
}

void tst_Translations::upToDate()
{
    QFETCH(QString, language);
    const QTemporaryDir folder;
    const QString made = folder.filePath(u"made.ts"_s);
    QProcess process;
    process.start(QStringLiteral(NY_LUPDATE),
        QString::fromUtf8(NY_LUPDATE_ARGUMENTS).split(u'|') + QStringList{u"-target-language"_s, language, u"-ts"_s, made});
    QVERIFY2(process.waitForFinished(30000) && process.exitCode() == 0, qPrintable(process.errorString()));
    // Such as a class without Q_OBJECT, whose texts would be looked for in another context than they are in.
    const QByteArray complaints = process.readAllStandardError();
    QVERIFY2(complaints.isEmpty(), complaints.constData());

    const TranslationFile current = TranslationFile::read(made);
    QCOMPARE(current.error, QString());
    const QStringList differences = file(language).differences(current);
    QVERIFY2(differences.isEmpty(),
        qPrintable(u"Build the target update-translations and fill in what is unfinished:\n  "_s + differences.join(u"\n  "_s)));
}

void tst_Translations::embedded()
{
    QFETCH(QString, language);
    QVERIFY(NyTranslation::languages().contains(language));
    QTranslator translator;
    QVERIFY(translator.load(u":/velmora/translations/velmora_%1.qm"_s.arg(language)));
    QStringList wrong;
    for (const TranslatedText &text : file(language).texts) {
        const QByteArray context = text.context.toUtf8();
        const QByteArray source = text.source.toUtf8();
        const QByteArray comment = text.comment.toUtf8();
        const QString found = translator.translate(
            context.constData(), source.constData(), comment.isEmpty() ? nullptr : comment.constData(), text.hasPlural ? 2 : -1);
        if (found != text.translations.constLast())
            wrong.append(u"%1 is \"%2\""_s.arg(text.name(), found));
    }
    VERIFY_NONE(wrong);
}

void tst_Translations::noGermanInEnglish()
{
    static const QRegularExpression german(
        u"[äöüßÄÖÜ„]|\\b(?:und|oder|der|das|nicht|ist|ein|eine|mit|für|wird|Buch|Fotos?|Ordner|Vorschlag|Datei)\\b"_s);
    QStringList wrong;
    for (const TranslatedText &text : file(u"en"_s).texts) {
        for (const QString &translation : text.translations) {
            if (german.match(translation).hasMatch())
                wrong.append(u"%1: %2"_s.arg(text.name(), translation));
        }
    }
    VERIFY_NONE(wrong);
}

void tst_Translations::fileNameOfProposals()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(u":/velmora/translations/velmora_%1.qm"_s.arg(language)));
    static const QRegularExpression plain(u"^[\\p{L}\\d]+(?:-[\\p{L}\\d]+)*$"_s);
    const QString word = translator.translate("NyQuilloServiceController", "Produktvorschlag");
    QVERIFY2(plain.match(word).hasMatch(), qPrintable(word));
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_Translations.moc"

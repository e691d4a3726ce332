#include "NyAlbumaCommandLine.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

const QString PROGRAM_MODE = u"programmode"_s;
const QString BUILDER_MODE = u"b"_s;
const QString BACKGROUND_JOBS = u"backgroundjobs"_s;
const QString TARGET_PATH = u"proposalTargetPath"_s;
const QString STYLES = u"proposalRecommendedStyles"_s;
const QString OCCASIONS = u"proposalOccasions"_s;
const QString SUPPRESS_LOAD_WARNINGS = u"suppressLoadWarnings"_s;
constexpr int MAXIMUM_JOBS = 64;

QStringList listOf(const QString &text)
{
    QStringList entries;
    for (const QString &entry : text.split(u',')) {
        if (!entry.trimmed().isEmpty())
            entries.append(entry.trimmed());
    }
    return entries;
}

}

NyAlbumaCommandLine::NyAlbumaCommandLine()
{
    const QString file = tr("Datei", "name of a value in the help of the command line, one word");
    setApplicationDescription(tr("Zeigt und bearbeitet Fotobücher. Im Builder-Modus entsteht ohne Fenster ein Vorschlag für eines."));
    addPositionalArgument(file, tr("Das Buch, das geöffnet wird."), u'[' + file + u']');
    addOption(CommandLineOptionType::Flag, {SUPPRESS_LOAD_WARNINGS}, tr("Öffnet ein Buch ohne Hinweis auf fehlende Fotos."), QString(),
        QString());
    addOption(CommandLineOptionType::OptionWithValue, {PROGRAM_MODE}, tr("\"b\": erstellt ohne Fenster einen Vorschlag."),
        tr("Modus", "name of a value in the help of the command line, one word"), QString());
    addOption(CommandLineOptionType::OptionWithValue, {TARGET_PATH}, tr("Builder: die Projektdatei, die entstehen soll."), file, QString());
    addOption(CommandLineOptionType::OptionWithValue, {BACKGROUND_JOBS}, tr("Builder: Zahl der Threads, die arbeiten."),
        tr("Zahl", "name of a value in the help of the command line, one word"), u"1"_s);
    addOption(CommandLineOptionType::OptionWithValue, {STYLES},
        tr("Builder: Kennungen von Designs, durch Kommas getrennt, das beste zuerst."),
        tr("Designs", "name of a value in the help of the command line, one word"), QString());
    addOption(CommandLineOptionType::OptionWithValue, {OCCASIONS},
        tr("Builder: Anlässe, durch Kommas getrennt, der wahrscheinlichste zuerst."),
        tr("Anlässe", "name of a value in the help of the command line, one word"), QString());
}

QString NyAlbumaCommandLine::readBuilder(NyBuilderRequest &request) const
{
    request.targetPath = value(TARGET_PATH);
    request.recommendedStyles = listOf(value(STYLES));
    request.occasions = listOf(value(OCCASIONS));
    if (request.targetPath.isEmpty())
        return tr("Die Option \"--%1\" fehlt.").arg(TARGET_PATH);
    bool isNumber = false;
    request.backgroundJobs = value(BACKGROUND_JOBS).toInt(&isNumber);
    if (!isNumber || request.backgroundJobs < 1 || request.backgroundJobs > MAXIMUM_JOBS) {
        return tr("Der Wert der Option \"--%1\" muss eine Zahl von 1 bis %2 sein.").arg(BACKGROUND_JOBS, QString::number(MAXIMUM_JOBS));
    }
    return {};
}

NyAlbumaStart NyAlbumaCommandLine::read()
{
    NyAlbumaStart start;
    const QStringList files = processCommandLine();
    start.suppressLoadWarnings = isSet(SUPPRESS_LOAD_WARNINGS);
    if (isSet(PROGRAM_MODE)) {
        if (value(PROGRAM_MODE) != BUILDER_MODE) {
            start.error = tr("Den Programm-Modus \"%1\" gibt es nicht.").arg(value(PROGRAM_MODE));
            return start;
        }
        start.mode = NyAlbumaStart::Mode::Builder;
        start.error = readBuilder(start.builder);
        return start;
    }
    if (files.size() > 1)
        start.error = tr("Es kann nur ein Buch auf einmal geöffnet werden.");
    else if (!files.isEmpty())
        start.projectFile = files.constFirst();
    return start;
}

#include "NyFotoAnalyser.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

#include <NyFotoAccess.h>
#include <NyImageLoader.h>

#include "NyImageMeasures.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

/** A side shorter than this is an icon, not a photo. */
constexpr int LEAST_SIDE_PX = 24;

/** A side shorter than this gives a stamp on paper: less than 22 mm at the lowest resolution that is printed. */
constexpr int TINY_SIDE_PX = 128;

/** Whether only a wrong clock can have said so: the first day that a reset clock counts, or a day that has not come anywhere yet. */
bool isImpossible(const QDateTime &time)
{
    return time.date() == QDate(1970, 1, 1) || time.date() > QDate::currentDate().addDays(1);
}

bool isScreenSize(const QSize &size)
{
    const int longer = std::max(size.width(), size.height());
    const int shorter = std::min(size.width(), size.height());
    constexpr std::array<std::array<int, 2>, 30> sizes{{
        {1024, 768},
        {1280, 720},
        {1280, 800},
        {1280, 1024},
        {1334, 750},
        {1366, 768},
        {1440, 900},
        {1600, 900},
        {1680, 1050},
        {1792, 828},
        {1920, 1080},
        {1920, 1200},
        {2048, 1536},
        {2208, 1242},
        {2220, 1080},
        {2280, 1080},
        {2340, 1080},
        {2400, 1080},
        {2436, 1125},
        {2532, 1170},
        {2556, 1179},
        {2560, 1440},
        {2560, 1600},
        {2688, 1242},
        {2778, 1284},
        {2796, 1290},
        {2880, 1800},
        {3200, 1440},
        {3440, 1440},
        {3840, 2160},
    }};
    return std::any_of(sizes.begin(), sizes.end(), [&](const auto &known) { return known[0] == longer && known[1] == shorter; });
}

}

bool NyFotoAnalyser::isScreenshot(const QString &path, const QSize &sizePx, bool isFromCamera, double flatness)
{
    static const QRegularExpression fileName(
        u"^(?:screen[ _-]?shot|screen[ _-]?capture|scrnshot|bildschirm(?:foto|aufnahme)|capture[ _](?:d['’_ ]?[ée]cran|plein [ée]cran)|"
        "captura[ _]de[ _](?:pantalla|tela|ecr[ãa])|schermata|schermafbeelding|schermopname|zrzut[ _]ekranu|sk[äa]rmbild|"
        "sk[äa]rmavbild|sk[æa]rmbillede)(?![\\p{Ll}])"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression folderName(
        u"^(?:screenshots?|screen captures?|bildschirmfotos|bildschirmaufnahmen)$"_s, QRegularExpression::CaseInsensitiveOption);
    const QString name = path.section(u'/', -1).normalized(QString::NormalizationForm_C);
    if (fileName.match(name).hasMatch() || folderName.match(path.section(u'/', -2, -2)).hasMatch())
        return true;
    constexpr double flatAbove = 0.5;
    return !isFromCamera && isScreenSize(sizePx) && flatness > flatAbove;
}

NyFotoFacts NyFotoAnalyser::analyse(const NyFoto &foto)
{
    NyFotoFacts facts;
    facts.url = foto.url();
    if (!foto.isLocalFile() || NyFotoAccess::isVideo(foto))
        return facts;
    const QString path = foto.location();
    const NyImageLoader &loader = NyImageLoader::instance();
    const QImage image = loader.loadScaled(path, QSize(NyImageMeasures::AnalysisSidePx, NyImageMeasures::AnalysisSidePx));
    if (image.isNull())
        return facts;
    facts.sizePx = loader.orientedSize(path);
    if (facts.sizePx.isEmpty())
        return facts;
    facts.captureTime = NyFotoAccess::captureTime(foto);
    const QDateTime lastModified = foto.localFileInfo().lastModified();
    if (!facts.captureTime.isValid() || (isImpossible(facts.captureTime) && !isImpossible(lastModified)))
        facts.captureTime = lastModified;
    if (!facts.captureTime.isValid())
        return facts;

    const NyImageMeasures::Result measures = NyImageMeasures::measure(image);
    facts.differenceHash = measures.differenceHash;
    facts.sharpness = measures.sharpness;
    facts.exposure = measures.exposure;
    facts.colorfulness = measures.colorfulness;
    const NyFotoMetaData metaData = NyFotoAccess::metaData(foto, NyBackgroundJobPriority::Analysis, false);
    const int rating = metaData.rating();
    facts.rating = std::clamp(rating, 0, 5);
    const bool isFromCamera = !metaData.cameraMake().isEmpty() || !metaData.cameraModel().isEmpty();
    if (isScreenshot(path, facts.sizePx, isFromCamera, measures.flatness))
        facts.flaw = NyFotoFacts::Flaw::Screenshot;
    else if (measures.isBlank || std::min(facts.sizePx.width(), facts.sizePx.height()) < LEAST_SIDE_PX)
        facts.flaw = NyFotoFacts::Flaw::Blank;
    else if (rating < 0)
        facts.flaw = NyFotoFacts::Flaw::Rejected;
    else if (std::min(facts.sizePx.width(), facts.sizePx.height()) < TINY_SIDE_PX)
        facts.flaw = NyFotoFacts::Flaw::Tiny;
    else if (measures.isBlurred)
        facts.flaw = NyFotoFacts::Flaw::Blurred;
    else
        facts.flaw = NyFotoFacts::Flaw::None;
    return facts;
}

#include "NyEventFinderConfiguration.h"

#include <NyXMLParser.h>

#include <QDomElement>

NyEventFinderConfiguration::NyEventFinderConfiguration()
    : m_eventFinderMode(NyEventFinderModeEnum::recognizerOnly)
    , m_occassionDetectorMode(NyEventFinderOccasionDetectorModeEnum::none)
{
}

NyEventFinderConfiguration::NyEventFinderConfiguration(const QDomElement &element)
    : m_eventFinderMode(NyXMLParser::attribute(element, QStringLiteral("eventFinderMode"), QString(), true))
    , m_occassionDetectorMode(NyXMLParser::attribute(element, QStringLiteral("detectOccasions"), QString(), true))
{
    const QDomElement recognizer = element.firstChildElement(QStringLiteral("eventRecognizer"));
    if (recognizer.isNull())
        return;
    m_useWordSimilarity = NyXMLParser::boolAttribute(recognizer, QStringLiteral("useWordSimilarity"), m_useWordSimilarity);
    m_loosenThreshold = NyXMLParser::boolAttribute(recognizer, QStringLiteral("loosenThreshold"), m_loosenThreshold);
    m_useCosineOrdering = NyXMLParser::boolAttribute(recognizer, QStringLiteral("useCosineOrdering"), m_useCosineOrdering);
    m_maxPhotos = NyXMLParser::intAttribute(recognizer, QStringLiteral("maxPhotos"), m_maxPhotos);
}

NyEventFinderConfiguration::~NyEventFinderConfiguration() = default;

NyEventFinderMode NyEventFinderConfiguration::eventFinderMode() const
{
    return m_eventFinderMode;
}

NyEventFinderOccasionDetectorMode NyEventFinderConfiguration::occassionDetectorMode() const
{
    return m_occassionDetectorMode;
}

bool NyEventFinderConfiguration::useWordSimilarity() const
{
    return m_useWordSimilarity;
}

bool NyEventFinderConfiguration::loosenThreshold() const
{
    return m_loosenThreshold;
}

bool NyEventFinderConfiguration::useCosineOrdering() const
{
    return m_useCosineOrdering;
}

int NyEventFinderConfiguration::maxPhotos() const
{
    return m_maxPhotos;
}

void NyEventFinderConfiguration::setEventFinderMode(const NyEventFinderMode &mode)
{
    m_eventFinderMode = mode;
}

void NyEventFinderConfiguration::setOccassionDetectorMode(NyEventFinderOccasionDetectorMode mode)
{
    m_occassionDetectorMode = mode;
}

void NyEventFinderConfiguration::setUseWordSimilarity(bool use)
{
    m_useWordSimilarity = use;
}

void NyEventFinderConfiguration::setLoosenThreshold(bool loosen)
{
    m_loosenThreshold = loosen;
}

void NyEventFinderConfiguration::setUseCosineOrdering(bool use)
{
    m_useCosineOrdering = use;
}

void NyEventFinderConfiguration::setMaxPhotos(int photos)
{
    m_maxPhotos = photos;
}

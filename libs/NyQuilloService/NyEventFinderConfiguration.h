#pragma once

#include "NyEventFinderMode.h"
#include "NyEventFinderOccasionDetectorMode.h"
#include "nyquilloservice_export.h"

class QDomElement;

/**
 * How the event finder behaves: a value, read once from the configuration's section "eventFinder" and handed out by copy.
 *
 * A default-constructed configuration is `recognizerOnly`, one that was read from a section without the attribute is `classic`.
 */
class NYQUILLOSERVICE_EXPORT NyEventFinderConfiguration
{
public:
    NyEventFinderConfiguration();
    /** Reads `element`, the section "eventFinder"; a null element and missing keys give the defaults of the file format. */
    explicit NyEventFinderConfiguration(const QDomElement &element);
    NyEventFinderConfiguration(const NyEventFinderConfiguration &) = default;
    NyEventFinderConfiguration &operator=(const NyEventFinderConfiguration &) = default;
    virtual ~NyEventFinderConfiguration();

    NyEventFinderMode eventFinderMode() const;
    NyEventFinderOccasionDetectorMode occassionDetectorMode() const;
    bool useWordSimilarity() const;
    bool loosenThreshold() const;
    bool useCosineOrdering() const;
    /** Photos. */
    int maxPhotos() const;

    void setEventFinderMode(const NyEventFinderMode &mode);
    void setOccassionDetectorMode(NyEventFinderOccasionDetectorMode mode);
    void setUseWordSimilarity(bool use);
    void setLoosenThreshold(bool loosen);
    void setUseCosineOrdering(bool use);
    void setMaxPhotos(int photos);

private:
    NyEventFinderMode m_eventFinderMode;
    NyEventFinderOccasionDetectorMode m_occassionDetectorMode;
    bool m_useWordSimilarity = false;
    int m_maxPhotos = 1000;
    bool m_loosenThreshold = false;
    bool m_useCosineOrdering = false;
};

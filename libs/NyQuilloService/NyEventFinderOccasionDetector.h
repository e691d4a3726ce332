#pragma once

#include <NyOccasionInfoList.h>

#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QString>

#include "nyquilloservice_export.h"

class NyFoto;
class NyFotoList;
class NyOrrinMediaItemBuilder;
class NyOrrinOccasion;
class NyOrrinVisionedMediaItem;
class QElapsedTimer;

/**
 * Finds out what occasion the photos of one folder show. Has no state of its own, lives on the thread that searches, and leaves
 * a text file about the last detection in the proposal folder.
 */
class NYQUILLOSERVICE_EXPORT NyEventFinderOccasionDetector
{
public:
    NyEventFinderOccasionDetector() = default;
    NyEventFinderOccasionDetector(const NyEventFinderOccasionDetector &) = default;
    NyEventFinderOccasionDetector &operator=(const NyEventFinderOccasionDetector &) = default;
    virtual ~NyEventFinderOccasionDetector();

    /**
     * The occasions, most probable first. Photos that cannot be shown are passed over. Looks at each photo one after the other,
     * which takes tens of milliseconds for one that NyVisionMemory does not know; stops with an empty list when the program ends.
     */
    NyOccasionInfoList detectOccasion(const NyFotoList &fotos);

    /** No video, of a known size, and readable. */
    static bool isValidFoto(const NyFoto &foto);
    /** What is known of the photo beside its picture. */
    static NyOrrinMediaItemBuilder createMediaItemBuilder(const NyFoto &foto);
    static NyOrrinVisionedMediaItem createVisionDescriptor(const NyFoto &foto);
    /** Whether `a` is more probable. */
    static bool compareOccasions(const NyOrrinOccasion &a, const NyOrrinOccasion &b);
    static NyOccasionInfo createOccasionInfo(NyOrrinOccasion occasion);

    /** The text file about the last detection. */
    QFileInfo outputFileInfo() const;
    /** Begins the text file anew, after a copy of the former one under the number of the week, unless that week has a copy. */
    void writeFotoListToFile(const NyFotoList &fotos);
    void writeDetectionResultsToFile(QElapsedTimer &timer, QList<QString> &descriptions);
};

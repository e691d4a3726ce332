#pragma once

#include <memory>
#include <optional>

#include <NyFotoFileStamp.h>
#include <NySingleton.h>

#include <QtCore/QString>

#include "nyquilloservice_export.h"

class NyFoto;
class NyOrrinVisionedMediaItem;

/**
 * Remembers what was seen in photos from one search to the next. The same folder is looked at again at every search, a photo takes
 * tens of milliseconds, and what is seen stays the same until the file changes.
 *
 * Holds at most MaximumBytes, and then forgets first what was not asked for lately. Thread-safe.
 */
class NYQUILLOSERVICE_EXPORT NyVisionMemory : public NySingleton<NyVisionMemory>
{
public:
    /** Some tens of thousands of photos: a search that has to look at many photos again never ends before the next one begins. */
    static constexpr qint64 MaximumBytes = 128 * 1024 * 1024;

    /** A photo as it lies on the disk now. Invalid, and never remembered, when there is no such file. */
    struct Content
    {
        QString location;
        NyFotoFileStamp stamp;

        bool isValid() const { return stamp.size >= 0; }
    };

    explicit NyVisionMemory(qint64 maximumBytes = MaximumBytes);
    ~NyVisionMemory() override;

    static Content contentOf(const NyFoto &foto);

    /** Whether this content can be shown; nothing when it is not known. */
    std::optional<bool> isValid(const Content &content);
    /** What was seen in this content; nothing when it is not known. */
    std::optional<NyOrrinVisionedMediaItem> item(const Content &content);

    /** Remembers that this content cannot be shown. */
    void rememberInvalid(const Content &content);
    /** Remembers what was seen, unless nothing was. */
    void remember(const Content &content, const NyOrrinVisionedMediaItem &item);

private:
    class Private;
    std::unique_ptr<Private> d;
};

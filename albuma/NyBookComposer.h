#pragma once

#include <NyBookProject.h>
#include <NyDesignStyle.h>

#include "NyBookTitle.h"
#include "NyFotoFacts.h"

/** Makes the book out of the chosen photos: cover, pages, texts. Pure. */
class NyBookComposer
{
public:
    /** Photos nearer to the paper's edge than this might be cut. */
    static constexpr double MarginMm = 12;

    struct Request
    {
        /** In the order of the book, at least one. */
        QList<NyFotoFacts> photos;
        NyBookTitle::Result words;
        NyDesignStyle style;
        QStringList occasions;
        qint64 creationDateEpoch = 0;
    };

    static NyBookProject compose(const Request &request);

    /** Index of the photo for the cover: the strongest of those that are sharp enough, else the strongest of all. */
    static qsizetype coverPhoto(const QList<NyFotoFacts> &photos);

    /** Photos that are printed with fewer pixels per inch than NyPageLayout::RecommendedDpi. */
    static int lowResolutionCount(const NyBookProject &project);
};

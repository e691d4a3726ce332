#pragma once

#include <NyBookProject.h>
#include <NyDesignStyle.h>

#include "NyBookTitle.h"
#include "NyFotoFacts.h"

/** Makes the book out of the chosen photos: cover, pages, texts. Pure. */
class NyBookComposer
{
public:
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

    /** The texts of the cover, where they lie and how they look there. */
    static NyBookText coverTitle(const QString &words, const QSizeF &pageMm);
    static NyBookText coverSubtitle(const QString &words, const QSizeF &pageMm);

    /** Photos that are printed with fewer pixels per inch than NyPageLayout::RecommendedDpi. */
    static int lowResolutionCount(const NyBookProject &project);
};

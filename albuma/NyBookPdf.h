#pragma once

#include <atomic>
#include <functional>

#include <QCoreApplication>
#include <QStringList>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

/**
 * Writes a book as a PDF for print: the front cover and then every inner page, one a page.
 *
 * Pages are laid out by NyBookRenderer, with their texts as texts and their fonts embedded. Every page has the trim box of the book's
 * page and BleedMm around it; what reaches beyond the trim is painted up to the bleed's edge. A photo file is stored once however often the
 * book shows it (see NyPrintPhoto), with its own colour profile or as sRGB, and without the metadata of its file. Memory does not grow with
 * the number of photos: until the PDF is written they lie in a nameless file beside it. Any thread; photos are read by up to four more
 * while it writes. Owns nothing but copies.
 */
class NyBookPdf
{
    Q_DECLARE_TR_FUNCTIONS(NyBookPdf)
public:
    static constexpr double BleedMm = 3;
    static constexpr double Dpi = 300;

    /** What becomes of a book with photos that are missing or cannot be read: no PDF, or one that shows nothing in their places. */
    enum class MissingPhotos { Refuse, LeaveEmpty };

    struct Result
    {
        enum class State { Written, Cancelled, PhotosMissing, Failed };
        State state = State::Failed;
        /** Only when it failed; for people, and names the file. */
        QString error;
        /** File names of the photos that are missing or cannot be read, in the order of the book. */
        QStringList missing;
        /** Places, the cover included, whose photo is printed with fewer than NyPageLayout::RecommendedDpi. */
        int lowResolutionCount = 0;
    };
    /** Called on the thread that writes: @p done of @p total steps, which never go back. */
    using Progress = std::function<void(int done, int total)>;

    NyBookPdf(const NyBookProject &project, const NyDesignStyle &style);

    /**
     * Puts the PDF at @p path, whole or not at all: whatever goes wrong, a file that was there stays as it is. A true @p isCancelled is
     * noticed between any two photos.
     */
    Result write(const QString &path, MissingPhotos missingPhotos, const Progress &progress, const std::atomic_bool &isCancelled) const;

private:
    NyBookProject m_project;
    NyDesignStyle m_style;
};

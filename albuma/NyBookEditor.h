#pragma once

#include <NyBookProject.h>

/**
 * What a user changes in a book, as functions from book to book. Pure; what cannot be done gives the book as it was.
 *
 * A page is laid out anew only where it looks as the composer lays pages out: up to NyPageLayout::MaximumPhotos photos of known size
 * inside the margins, apart from each other, uncut and with NyPageLayout::MinimumDpi, under nothing but a day heading. On any other
 * page the photos that are not edited stay where they are.
 */
class NyBookEditor
{
public:
    /** Longer words are cut off: neither a cover nor the start screen shows more. */
    static constexpr qsizetype LongestText = 200;

    /**
     * Gives the book its title and subtitle, on the cover too. Line breaks become blanks; a title of nothing but blanks leaves the old
     * one. A subtitle comes onto the cover where the composer puts it, unless something else lies there.
     */
    static NyBookProject withWords(const NyBookProject &project, const QString &title, const QString &subtitle);

    /** Whether there is a photo that can be taken away: any but the cover's. */
    static bool canRemove(const NyBookProject &project, NyBookPlace place);

    /** A page goes with its last photo; its day heading then moves to the next page of that day. */
    static NyBookProject withoutPhoto(const NyBookProject &project, NyBookPlace place);

    /** Shows another picture there, whole and unturned. @p sizePx is its upright size; a photo file in a book needs 1 to 1,000,000 a side.
     */
    static NyBookProject withPhoto(const NyBookProject &project, NyBookPlace place, const QUrl &url, const QSize &sizePx);
};

#pragma once

#include <optional>

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QSize>
#include <QString>

/**
 * A JPEG taken apart into its picture and what stands around it (ITU T.81, annex B), so that the picture can go into another file
 * without being decoded. Holds the whole file. Any thread.
 */
class NyJpegFile
{
public:
    static bool isJpeg(QByteArrayView head) { return head.startsWith(QByteArrayView("\xff\xd8\xff", 3)); }

    /**
     * Takes baseline and progressive Huffman JPEGs with 8 bits a sample and one component, or three that are YCbCr or that an Adobe
     * segment declares. For all others, and for files that are cut short or whose segments do not hold together, nothing and a
     * @p reason. The coded data itself is not decoded.
     */
    static std::optional<NyJpegFile> parse(const QByteArray &bytes, QString &reason);

    /** As stored, before any orientation is applied. */
    QSize sizePx() const { return m_sizePx; }
    /** 1, grey, or 3. */
    int componentCount() const { return m_componentCount; }
    /** The embedded ICC profile if it is whole and for so many components; else empty. */
    const QByteArray &iccProfile() const { return m_iccProfile; }

    /**
     * The picture alone as a JPEG: tables, frame and scans byte for byte, and the segments that tell how its colours are coded.
     * No metadata, no thumbnail, no comment, nothing behind the end of the picture.
     */
    QByteArray picture() const;
    /** Size of picture(). */
    qsizetype pictureBytes() const;

private:
    friend class NyJpegParser;

    QByteArray m_bytes;
    /** Stretches of the file that belong to the picture, in order: from, and behind the last byte. */
    QList<std::pair<qsizetype, qsizetype>> m_parts;
    QSize m_sizePx;
    int m_componentCount = 0;
    QByteArray m_iccProfile;
    bool m_hasJfif = false;
};

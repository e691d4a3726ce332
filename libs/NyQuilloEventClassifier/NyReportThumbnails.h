#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QString>

/**
 * Small pictures for the classification reports.
 *
 * The same reports are written again at every search, so what was made once is kept, unreadable pictures too, as long as the file keeps
 * its size and time. One object a process; thread-safe; a few hundred pictures of some kilobytes each at most.
 */
class NyReportThumbnails
{
public:
    /** The longer side, in px. Twice the size that the page shows, for screens with small pixels. */
    static constexpr int SidePx = 192;

    static NyReportThumbnails &instance();

    /** A JPEG of the picture, upright, without metadata. Empty when the picture cannot be read. Blocks while it decodes. */
    QByteArray jpeg(const QString &path);

private:
    static QByteArray makeJpeg(const QString &path);

    QMutex m_mutex;
    QHash<QByteArray, QByteArray> m_jpegs;
};

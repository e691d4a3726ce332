#include "NyJpegFile.h"

#include <array>
#include <map>

#include <QtEndian>

namespace
{

using namespace Qt::Literals::StringLiterals;

/** A JFIF segment that says nothing but that the picture's three components are YCbCr, and one grey: version 1.01, no density, no
 * thumbnail. */
constexpr QByteArrayView plainJfif("\xff\xe0\x00\x10JFIF\x00\x01\x01\x00\x00\x01\x00\x01\x00\x00", 18);
constexpr QByteArrayView startOfImage("\xff\xd8", 2);
constexpr QByteArrayView endOfImage("\xff\xd9", 2);
constexpr QByteArrayView iccSignature("ICC_PROFILE\0", 12);

enum Marker {
    BaselineFrame = 0xc0,
    ProgressiveFrame = 0xc2,
    HuffmanTables = 0xc4,
    FirstRestart = 0xd0,
    LastRestart = 0xd7,
    EndOfImage = 0xd9,
    StartOfScan = 0xda,
    QuantizationTables = 0xdb,
    RestartInterval = 0xdd,
    App0 = 0xe0,
    App2 = 0xe2,
    App14 = 0xee,
    App15 = 0xef,
    Comment = 0xfe
};

/** Whether the profile is whole and describes so many components (ICC.1:2010, clause 7.2). */
bool isProfileFor(const QByteArray &profile, int componentCount)
{
    constexpr qsizetype headerBytes = 128;
    if (profile.size() < headerBytes || profile.sliced(36, 4) != "acsp")
        return false;
    const quint32 size = qFromBigEndian<quint32>(profile.constData());
    return size >= headerBytes && size <= size_t(profile.size()) && profile.sliced(16, 4) == (componentCount == 1 ? "GRAY" : "RGB ");
}

}

/** Goes once through the segments of a file. */
class NyJpegParser
{
public:
    explicit NyJpegParser(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        m_file.m_bytes = bytes;
    }

    bool parse()
    {
        if (!NyJpegFile::isJpeg(m_bytes))
            return refuse(u"it does not begin as a JPEG"_s);
        m_at = startOfImage.size();
        for (;;) {
            const qsizetype begin = m_at;
            const int marker = nextMarker();
            if (marker < 0)
                return refuse(u"it is cut short or damaged at byte %1"_s.arg(begin));
            if (marker == EndOfImage)
                return finish();
            if (marker >= FirstRestart && marker <= LastRestart)
                return refuse(u"it is damaged at byte %1"_s.arg(begin));
            // The marker itself, without bytes that fill up before it.
            const qsizetype segment = m_at - 2;
            if (m_bytes.size() - m_at < 2)
                return refuse(u"it is cut short"_s);
            const qsizetype length = number(m_at);
            if (length < 2 || m_bytes.size() - m_at < length)
                return refuse(u"it is cut short or damaged at byte %1"_s.arg(begin));
            const QByteArrayView content = QByteArrayView(m_bytes).sliced(m_at + 2, length - 2);
            m_at += length;
            if (!takeSegment(marker, segment, content))
                return false;
        }
    }

    const NyJpegFile &file() const { return m_file; }
    const QString &reason() const { return m_reason; }

private:
    bool refuse(const QString &reason)
    {
        m_reason = reason;
        return false;
    }

    int number(qsizetype at) const { return qFromBigEndian<quint16>(m_bytes.constData() + at); }

    /** Stands behind the marker then; -1 where none stands. */
    int nextMarker()
    {
        if (m_at >= m_bytes.size() || uchar(m_bytes[m_at]) != 0xff)
            return -1;
        while (m_at < m_bytes.size() && uchar(m_bytes[m_at]) == 0xff)
            ++m_at;
        return m_at < m_bytes.size() && m_bytes[m_at] != 0 ? uchar(m_bytes[m_at++]) : -1;
    }

    /** The segment begins at @p begin and ends where the parser stands. */
    bool takeSegment(int marker, qsizetype begin, QByteArrayView content)
    {
        switch (marker) {
        case BaselineFrame:
        case ProgressiveFrame:
            if (!takeFrame(content))
                return false;
            break;
        case HuffmanTables:
        case QuantizationTables:
        case RestartInterval:
            break;
        case StartOfScan:
            if (m_file.m_componentCount == 0)
                return refuse(u"a scan stands before the frame"_s);
            if (!skipCodedData())
                return refuse(u"it is cut short"_s);
            m_hasScan = true;
            break;
        case App14:
            if (!content.startsWith("Adobe") || content.size() < 12)
                return true;
            m_adobeTransform = uchar(content[11]);
            break;
        case App0:
            m_file.m_hasJfif = m_file.m_hasJfif || content.startsWith(QByteArrayView("JFIF\0", 5));
            return true;
        case App2:
            if (content.startsWith(iccSignature) && content.size() > iccSignature.size() + 2) {
                m_iccParts[uchar(content[12])] = content.sliced(14).toByteArray();
                m_iccPartCount = uchar(content[13]);
            }
            return true;
        default:
            if ((marker > App0 && marker <= App15) || marker == Comment)
                return true;
            return refuse(u"its coding (marker 0x%1) is not for print files"_s.arg(marker, 0, 16));
        }
        m_file.m_parts.append({begin, m_at});
        return true;
    }

    bool takeFrame(QByteArrayView content)
    {
        if (m_file.m_componentCount != 0)
            return refuse(u"it has several frames"_s);
        if (content.size() < 6)
            return refuse(u"its frame is damaged"_s);
        const auto byte = [&](qsizetype at) { return int(uchar(content[at])); };
        const int count = byte(5);
        m_file.m_sizePx = QSize(byte(3) << 8 | byte(4), byte(1) << 8 | byte(2));
        if (byte(0) != 8)
            return refuse(u"it has %1 bits a sample"_s.arg(byte(0)));
        if (m_file.m_sizePx.isEmpty())
            return refuse(u"its frame does not tell its size"_s);
        if ((count != 1 && count != 3) || content.size() != 6 + 3 * count)
            return refuse(u"it has %1 components"_s.arg(count));
        m_isRgbByName = count == 3 && byte(6) == 'R' && byte(9) == 'G' && byte(12) == 'B';
        m_file.m_componentCount = count;
        return true;
    }

    /** Behind a scan's data, in which only stuffed zeros and restarts follow a byte of ones. */
    bool skipCodedData()
    {
        for (;;) {
            m_at = m_bytes.indexOf('\xff', m_at);
            if (m_at < 0 || m_at + 1 >= m_bytes.size())
                return false;
            const int next = uchar(m_bytes[m_at + 1]);
            if (next == 0 || (next >= FirstRestart && next <= LastRestart))
                m_at += 2;
            else if (next == 0xff)
                ++m_at;
            else
                return true;
        }
    }

    bool finish()
    {
        if (!m_hasScan)
            return refuse(u"it has no picture"_s);
        if (m_file.m_componentCount == 3) {
            // Readers of print files know the components' names differently well.
            if (m_isRgbByName && m_adobeTransform < 0 && !m_file.m_hasJfif)
                return refuse(u"its colours are not declared"_s);
            if (m_adobeTransform > 1)
                return refuse(u"its colours are declared for four components"_s);
        }
        QByteArray profile;
        for (const auto &[number, part] : m_iccParts)
            profile += part;
        const bool isWhole = m_iccPartCount > 0 && int(m_iccParts.size()) == m_iccPartCount && m_iccParts.begin()->first == 1
            && m_iccParts.rbegin()->first == m_iccPartCount;
        if (isWhole && isProfileFor(profile, m_file.m_componentCount))
            m_file.m_iccProfile = profile;
        return true;
    }

    const QByteArray m_bytes;
    NyJpegFile m_file;
    QString m_reason;
    qsizetype m_at = 0;
    std::map<int, QByteArray> m_iccParts;
    int m_iccPartCount = 0;
    /** Negative without an Adobe segment. */
    int m_adobeTransform = -1;
    bool m_hasScan = false;
    bool m_isRgbByName = false;
};

std::optional<NyJpegFile> NyJpegFile::parse(const QByteArray &bytes, QString &reason)
{
    NyJpegParser parser(bytes);
    if (parser.parse())
        return parser.file();
    reason = parser.reason();
    return std::nullopt;
}

QByteArray NyJpegFile::picture() const
{
    QByteArray picture;
    picture.reserve(pictureBytes());
    picture += startOfImage;
    if (m_hasJfif)
        picture += plainJfif;
    for (const auto &[begin, end] : m_parts)
        picture += QByteArrayView(m_bytes).sliced(begin, end - begin);
    picture += endOfImage;
    return picture;
}

qsizetype NyJpegFile::pictureBytes() const
{
    qsizetype bytes = startOfImage.size() + (m_hasJfif ? plainJfif.size() : 0) + endOfImage.size();
    for (const auto &[begin, end] : m_parts)
        bytes += end - begin;
    return bytes;
}

#include "NyFoto.h"

#include <QtCore/QDir>
#include <QtCore/QStringDecoder>

namespace
{

constexpr QLatin1StringView FileScheme("file://");
constexpr QLatin1StringView PhotokitScheme("photokit:");

/** Whether a path can be taken without asking QFileInfo to clean it, which costs memory for each file. */
bool isCleanAbsolutePath(const QString &path)
{
    if (!path.startsWith(u'/') || (path.size() > 1 && path.endsWith(u'/')))
        return false;
    for (qsizetype i = path.indexOf(u'/'); i >= 0; i = path.indexOf(u'/', i + 1)) {
        const QStringView rest = QStringView(path).sliced(i + 1);
        if (rest.startsWith(u'/') || rest == u"." || rest == u".." || rest.startsWith(u"./") || rest.startsWith(u"../"))
            return false;
    }
    return true;
}

/** What QUrl leaves unescaped in a path. */
bool isPlainInUrlPath(uchar byte)
{
    if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9'))
        return true;
    switch (byte) {
    case '/':
    case '-':
    case '.':
    case '_':
    case '~':
    case '!':
    case '$':
    case '&':
    case '\'':
    case '(':
    case ')':
    case '*':
    case '+':
    case ',':
    case ';':
    case '=':
    case ':':
    case '@':
    case '[':
    case ']':
        return true;
    default:
        return false;
    }
}

QString encodedFileUrl(const QString &path)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    const QByteArray bytes = path.toUtf8();
    QString url;
    url.reserve(FileScheme.size() + bytes.size());
    url += FileScheme;
    for (const char byte : bytes) {
        const uchar value = uchar(byte);
        if (isPlainInUrlPath(value)) {
            url += QLatin1Char(byte);
        } else {
            url += u'%';
            url += QLatin1Char(Digits[value >> 4]);
            url += QLatin1Char(Digits[value & 15]);
        }
    }
    return url;
}

int hexDigit(QChar letter)
{
    const char16_t value = letter.unicode();
    if (value >= u'0' && value <= u'9')
        return value - u'0';
    if (value >= u'A' && value <= u'F')
        return value - u'A' + 10;
    if (value >= u'a' && value <= u'f')
        return value - u'a' + 10;
    return -1;
}

/** The path of a file URL without host, or an empty text when the URL does not name a path that can be spelled as one. */
QString decodedFileUrl(const QString &url)
{
    if (!url.startsWith(FileScheme) || url.size() == FileScheme.size() || url.at(FileScheme.size()) != u'/')
        return {};
    QByteArray bytes(url.size(), Qt::Uninitialized);
    char *end = bytes.data();
    bool isAscii = true;
    for (qsizetype i = FileScheme.size(); i < url.size(); ++i) {
        const char16_t letter = url.at(i).unicode();
        if (letter > 0x7f || letter == u'#' || letter == u'?')
            return {};
        if (letter != u'%') {
            *end++ = char(letter);
            continue;
        }
        if (i + 2 >= url.size())
            return {};
        const int high = hexDigit(url.at(i + 1));
        const int low = hexDigit(url.at(i + 2));
        const int value = high * 16 + low;
        if (high < 0 || low < 0 || value == 0 || value == '/')
            return {};
        isAscii = isAscii && value < 0x80;
        *end++ = char(value);
        i += 2;
    }
    bytes.truncate(end - bytes.constData());
    if (isAscii) {
        const QString path = QString::fromLatin1(bytes);
        return isCleanAbsolutePath(path) ? path : QString();
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString path = decoder(bytes);
    if (decoder.hasError() || !isCleanAbsolutePath(path))
        return {};
    return path;
}

}

NyFoto::NyFoto(const QFileInfo &file)
{
    const QString path = file.filePath();
    if (path.isEmpty())
        return;
    if (path.startsWith(PhotokitScheme))
        m_location = QUrl(path).toString(QUrl::FullyEncoded);
    else
        m_location = isCleanAbsolutePath(path) ? path : file.absoluteFilePath();
}

NyFoto::NyFoto(const QUrl &url)
{
    if (url.isEmpty())
        return;
    if (url.scheme().isEmpty() && url.path().startsWith(u'/')) {
        *this = NyFoto(QFileInfo(url.path(QUrl::FullyDecoded)));
        return;
    }
    *this = fromUrlString(url.toString(QUrl::FullyEncoded));
}

NyFoto NyFoto::fromUrlString(const QString &urlString)
{
    NyFoto foto;
    foto.m_location = decodedFileUrl(urlString);
    if (foto.m_location.isEmpty())
        foto.m_location = urlString;
    return foto;
}

QFileInfo NyFoto::localFileInfo() const
{
    if (m_location.isEmpty())
        return {};
    if (!isLocalFile()) {
        const QUrl location(m_location);
        return QFileInfo(location.isLocalFile() ? location.toLocalFile() : m_location);
    }
    return QFileInfo(m_location);
}

QUrl NyFoto::url() const
{
    if (m_location.isEmpty())
        return {};
    return isLocalFile() ? QUrl::fromLocalFile(m_location) : QUrl(m_location);
}

QString NyFoto::urlString() const
{
    if (m_location.isEmpty())
        return {};
    return isLocalFile() ? encodedFileUrl(m_location) : m_location;
}

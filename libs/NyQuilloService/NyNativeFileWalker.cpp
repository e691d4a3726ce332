#include "NyNativeFileWalker.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <NyDirectoryConfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QFile>

namespace
{

constexpr std::size_t ListingBufferBytes = 128 * 1024;
constexpr qsizetype MaximumReportedNames = 10;

/** In ms since 1970-01-01 UTC, rounded down as QFileInfo does; 0 where the file system records no birth time. */
qint64 birthTimeMs(const struct statx &status)
{
    if (!(status.stx_mask & STATX_BTIME))
        return 0;
    return qint64(status.stx_btime.tv_sec) * 1000 + status.stx_btime.tv_nsec / 1000000;
}

std::pair<quint64, quint64> fileId(const struct statx &status)
{
    return {(quint64(status.stx_dev_major) << 32) | status.stx_dev_minor, status.stx_ino};
}

unsigned char typeOf(int descriptor, const char *name)
{
    struct statx status;
    if (::statx(descriptor, name, AT_SYMLINK_NOFOLLOW, STATX_TYPE, &status) != 0)
        return DT_UNKNOWN;
    return IFTODT(status.stx_mode);
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

QString escaped(const QByteArray &name)
{
    QString text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x1f && byte < 0x7f && c != '\\')
            text += QLatin1Char(c);
        else
            text += QStringLiteral("\\x%1").arg(uint(byte), 2, 16, QLatin1Char('0'));
    }
    return text;
}

QString withSeparatorAtEnd(const QString &path)
{
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

} // namespace

bool NyNativeFileWalker::Step::contains(FileId folder) const
{
    for (const Step *step = this; step; step = step->above) {
        if (step->id == folder)
            return true;
    }
    return false;
}

NyNativeFileWalker::NyNativeFileWalker(const NyFileNameFilter &filter, const NyBirthTimeWindow &window, QSet<QString> *reportedFolders)
    : m_filter(filter)
    , m_window(window)
    , m_reportedFolders(reportedFolders)
    , m_buffer(ListingBufferBytes)
{
}

bool NyNativeFileWalker::canWalk(const QString &path)
{
    if (path.isEmpty() || path.contains(QChar(u'\0')))
        return false;
    return path.startsWith(QLatin1Char('/')) || !path.contains(QLatin1Char(':'));
}

void NyNativeFileWalker::walk(const QString &path)
{
    m_nativePath = QFile::encodeName(path).toStdString();
    walkFolder(path, nullptr, false);
}

QList<QFileInfo> NyNativeFileWalker::takeFiles()
{
    std::sort(
        m_keptFiles.begin(), m_keptFiles.end(), [this](const KeptFile &left, const KeptFile &right) { return isBefore(left, right); });
    QList<QFileInfo> files;
    files.reserve(qsizetype(m_keptFiles.size()));
    for (const KeptFile &file : m_keptFiles)
        files.emplace_back(path(file));
    m_keptFiles = {};
    m_keptPrefixes = {};
    m_keptNames = {};
    return files;
}

bool NyNativeFileWalker::isBefore(const KeptFile &left, const KeptFile &right) const
{
    if (left.birthTimeMs != right.birthTimeMs)
        return left.birthTimeMs < right.birthTimeMs;
    const std::string_view leftName(m_keptNames.c_str() + left.name);
    const std::string_view rightName(m_keptNames.c_str() + right.name);
    if (left.folder == right.folder && isAscii(leftName) && isAscii(rightName))
        return leftName < rightName;
    return path(left) < path(right);
}

QString NyNativeFileWalker::path(const KeptFile &file) const
{
    const QString &prefix = m_keptPrefixes[file.folder];
    const std::string_view name(m_keptNames.c_str() + file.name);
    if (!isAscii(name))
        return prefix + QString::fromUtf8(name.data(), qsizetype(name.size()));
    QString path(prefix.size() + qsizetype(name.size()), Qt::Uninitialized);
    QChar *const end = std::copy(prefix.cbegin(), prefix.cend(), path.data());
    std::transform(name.begin(), name.end(), end, [](char c) { return QLatin1Char(c); });
    return path;
}

void NyNativeFileWalker::walkFolder(const QString &path, const Step *above, bool isBehindLink)
{
    if (QCoreApplication::closingDown()) {
        m_isInterrupted = true;
        return;
    }
    // Below the first folder every path is absolute and clean.
    const QString absolutePath = above ? path : QFileInfo(path).absoluteFilePath();
    const auto &directories = NySingleton<NyDirectoryConfig>::instance();
    const QStringView name = QStringView(absolutePath).sliced(absolutePath.lastIndexOf(QLatin1Char('/')) + 1);
    if (NyDirectoryConfig::isIgnorableFolderName(name) || directories.isOwnDataFolder(absolutePath))
        return;

    const int descriptor = ::open(m_nativePath.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        report(absolutePath, QString::fromLocal8Bit(std::strerror(errno)));
        return;
    }
    Step step{above, {}, isBehindLink};
    struct statx status;
    if (::statx(descriptor, "", AT_EMPTY_PATH, STATX_INO, &status) == 0)
        step.id = fileId(status);
    if (isBehindLink && enterOften(step.id)) {
        ::close(descriptor);
        report(absolutePath, QStringLiteral("links lead here in too many ways, this one is not followed"));
        return;
    }

    const std::size_t keptFilesBefore = m_keptFiles.size();
    const int countAfterWindowBefore = m_countAfterWindow;
    Listing listing;
    listing.absolutePath = absolutePath;
    listing.prefix = withSeparatorAtEnd(path);
    list(descriptor, listing);
    if (errno != 0)
        report(absolutePath, QString::fromLocal8Bit(std::strerror(errno)));
    ::close(descriptor);
    if (listing.isIgnorable) {
        m_keptFiles.erase(m_keptFiles.begin() + qsizetype(keptFilesBefore), m_keptFiles.end());
        m_countAfterWindow = countAfterWindowBefore;
        return;
    }
    if (!listing.undecodableNames.isEmpty())
        reportUndecodable(absolutePath, listing.undecodableNames);
    if (listing.hasLinkToSpecialFile || !listing.subfolders.empty())
        m_hasSubfolders = true;
    if (!listing.subfolders.empty())
        walkSubfolders(listing, step);
}

/** Counts the visit. True when there have been too many. */
bool NyNativeFileWalker::enterOften(FileId folder)
{
    return ++m_visitsBehindLinks[folder] > MaximumVisitsBehindLinks;
}

/** Reads all entries of the folder. Afterwards errno is 0 or tells why the reading ended early. */
void NyNativeFileWalker::list(int descriptor, Listing &listing)
{
    for (;;) {
        const ssize_t bytes = ::getdents64(descriptor, m_buffer.data(), m_buffer.size());
        if (bytes <= 0) {
            if (bytes == 0)
                errno = 0;
            return;
        }
        for (ssize_t offset = 0; offset < bytes;) {
            const auto *entry = reinterpret_cast<const struct dirent64 *>(m_buffer.data() + offset);
            offset += entry->d_reclen;
            addEntry(descriptor, entry->d_name, entry->d_type, listing);
            if (listing.isIgnorable) {
                errno = 0;
                return;
            }
        }
    }
}

void NyNativeFileWalker::addEntry(int descriptor, const char *name, unsigned char type, Listing &listing)
{
    if (name[0] == '.') {
        listing.isIgnorable = marksAsIgnorable(name, type, listing.absolutePath);
        return;
    }
    if (type == DT_UNKNOWN)
        type = typeOf(descriptor, name);
    const std::size_t length = std::strlen(name);
    if (type == DT_REG && !m_filter.matches(QByteArrayView(name, qsizetype(length))))
        return;
    if (type != DT_REG && type != DT_DIR && type != DT_LNK)
        return;
    if (!isAscii({name, length}) && !QByteArrayView(name, qsizetype(length)).isValidUtf8()) {
        listing.undecodableNames.append(QByteArray(name, qsizetype(length)));
        return;
    }
    if (type == DT_DIR) {
        listing.subfolders.push_back({std::string(name, length), std::nullopt});
        return;
    }
    if (type == DT_LNK) {
        addLink(name, listing);
        return;
    }
    // Longer paths can be listed here, but nobody could open the file by its path.
    if (m_nativePath.size() + 1 + length >= PATH_MAX)
        return;
    struct statx status;
    if (::statx(descriptor, name, 0, STATX_BTIME, &status) == 0)
        addFile(birthTimeMs(status), name, length, listing);
}

void NyNativeFileWalker::addLink(const char *name, Listing &listing)
{
    // The whole path, not the name: the system's limits for links and lengths are those of a user of the path.
    const std::string path = pathOfEntry(name);
    struct statx status;
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0)
        return;
    if (S_ISDIR(status.stx_mode)) {
        listing.subfolders.push_back({name, fileId(status)});
        return;
    }
    // To Qt, a link to a device or a pipe is a file as well as a folder, the folder being empty.
    if (!S_ISREG(status.stx_mode))
        listing.hasLinkToSpecialFile = true;
    if (m_filter.matches(name))
        addFile(birthTimeMs(status), name, std::strlen(name), listing);
}

void NyNativeFileWalker::addFile(qint64 birthTimeMs, const char *name, std::size_t length, Listing &listing)
{
    if (birthTimeMs == 0)
        return;
    const NyBirthTimeWindow::Verdict verdict = m_window.verdict(birthTimeMs);
    if (verdict == NyBirthTimeWindow::Verdict::After)
        ++m_countAfterWindow;
    if (verdict != NyBirthTimeWindow::Verdict::Inside)
        return;
    if (!listing.keepsFiles) {
        listing.keepsFiles = true;
        m_keptPrefixes.push_back(listing.prefix);
    }
    m_keptFiles.push_back({birthTimeMs, m_keptPrefixes.size() - 1, m_keptNames.size()});
    m_keptNames.append(name, length + 1);
}

void NyNativeFileWalker::walkSubfolders(Listing &listing, const Step &step)
{
    std::sort(listing.subfolders.begin(), listing.subfolders.end(),
        [](const Subfolder &left, const Subfolder &right) { return left.name < right.name; });
    const QString prefix = withSeparatorAtEnd(listing.absolutePath);
    const std::string presentPath = m_nativePath;
    // The first folder may have been given by a relative path; what lies below is reached by absolute ones.
    const std::string nativePrefix = step.above ? presentPath + '/' : QFile::encodeName(prefix).toStdString();
    for (const Subfolder &subfolder : listing.subfolders) {
        m_nativePath = nativePrefix + subfolder.name;
        const QString path = prefix + QString::fromUtf8(subfolder.name.data(), qsizetype(subfolder.name.size()));
        if (subfolder.linkTarget && !mayFollow(subfolder, step))
            report(path, QStringLiteral("a second link to a folder above itself is not followed"));
        else
            walkFolder(path, &step, step.isBehindLink || subfolder.linkTarget);
        if (m_isInterrupted)
            break;
    }
    m_nativePath = presentPath;
}

bool NyNativeFileWalker::mayFollow(const Subfolder &link, const Step &step)
{
    if (!step.contains(*link.linkTarget))
        return true;
    if (!m_followedLoop)
        m_followedLoop.emplace(step.id, link.name);
    return m_followedLoop->first == step.id && m_followedLoop->second == link.name;
}

bool NyNativeFileWalker::marksAsIgnorable(const char *name, unsigned char type, const QString &absoluteFolder)
{
    const QLatin1StringView text(name);
    if (text.size() <= 2)
        return false;
    if (type == DT_REG && NyDirectoryConfig::isIgnoreMarkerName(QString(text)))
        return true;
    // A link, or a file system that ignores case: the question by path decides.
    return NyDirectoryConfig::isIgnoreMarkerName(QString(text).toLower()) && NyDirectoryConfig::hasIgnoreMarker(absoluteFolder);
}

std::string NyNativeFileWalker::pathOfEntry(std::string_view name) const
{
    std::string path = m_nativePath;
    if (path.back() != '/')
        path += '/';
    path += name;
    return path;
}

void NyNativeFileWalker::report(const QString &folder, const QString &fault)
{
    if (m_reportedFolders->contains(folder))
        return;
    m_reportedFolders->insert(folder);
    qWarning() << "QUILLO_SERVICE: folder left out of the scan:" << folder << fault;
}

void NyNativeFileWalker::reportUndecodable(const QString &folder, const QByteArrayList &names)
{
    if (m_reportedFolders->contains(folder))
        return;
    m_reportedFolders->insert(folder);
    QStringList texts;
    for (const QByteArray &name : names.first(std::min(names.size(), MaximumReportedNames)))
        texts.append(escaped(name));
    qWarning() << "QUILLO_SERVICE: names that are not valid UTF-8 left out of the scan:" << names.size() << "in" << folder << "such as"
               << texts;
}

#include "NyFirstEqualFileRemover.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <unordered_map>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringView>

namespace
{

// Below that many files, asking for each is cheaper than reading the whole folder.
constexpr int FilesWorthAListing = 4;
// Far below PATH_MAX even when each character takes three bytes.
constexpr qsizetype MaximumPlainPathLength = 1000;

/** Paths that Qt may resolve by other means than the file system's, and those that equal nothing. */
bool isSpecial(const QString &path)
{
    return path.isEmpty() || path.contains(QChar(u'\0')) || (path.front() != u'/' && path.contains(QLatin1Char(':')));
}

struct Free
{
    void operator()(char *memory) const { std::free(memory); }
};

struct CloseDirectory
{
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/** Canonical paths of many files, the same that QFileInfo::canonicalFilePath() gives. Files must exist. */
class CanonicalPaths
{
public:
    /** Announces a file, so that it is known how many lie in a folder. The path's characters must stay where they are. */
    void announce(const QString &path)
    {
        const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
        if (slash >= 0)
            ++folder(QStringView(path).first(slash)).fileCount;
    }

    /** What is returned lasts until the next call. */
    const QString &canonicalPath(const QFileInfo &file, const QString &path)
    {
        const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
        const QStringView name = QStringView(path).sliced(slash + 1);
        if (slash < 0 || path.size() > MaximumPlainPathLength || name.isEmpty() || name == u"." || name == u".." || !path.isValidUtf16())
            return m_canonical = file.canonicalFilePath();
        Folder &parent = folder(QStringView(path).first(slash));
        if (!parent.isRead)
            read(parent, path.first(slash));
        if (!parent.isUsable || mayBeLink(parent, path, name))
            return m_canonical = file.canonicalFilePath();
        if (QStringView(path).first(slash + 1) == parent.canonicalPrefix)
            return path;
        m_canonical.resize(0);
        m_canonical.append(parent.canonicalPrefix);
        m_canonical.append(name);
        return m_canonical;
    }

private:
    struct Folder
    {
        int fileCount = 0;
        bool isRead = false;
        bool isUsable = false;
        bool isListed = false;
        QString canonicalPrefix; // ends with a separator
        QSet<QString> links; // only when listed
    };

    Folder &folder(QStringView path)
    {
        // Photos of one folder mostly follow each other.
        if (m_last && path == m_lastPath)
            return *m_last;
        m_last = &m_folders[path];
        m_lastPath = path;
        return *m_last;
    }

    static void read(Folder &folder, const QString &path)
    {
        folder.isRead = true;
        const QByteArray nativePath = path.isEmpty() ? QByteArrayLiteral("/") : QFile::encodeName(path);
        const std::unique_ptr<char, Free> resolved(::realpath(nativePath.constData(), nullptr));
        // Without leave to search the folder the canonical path of what lies in it is not to be had.
        if (!resolved || ::faccessat(AT_FDCWD, resolved.get(), X_OK, AT_EACCESS) != 0)
            return;
        folder.canonicalPrefix = QFile::decodeName(resolved.get());
        if (folder.canonicalPrefix.size() > MaximumPlainPathLength)
            return;
        if (!folder.canonicalPrefix.endsWith(QLatin1Char('/')))
            folder.canonicalPrefix += QLatin1Char('/');
        folder.isUsable = true;
        if (folder.fileCount >= FilesWorthAListing)
            listLinks(folder, resolved.get());
    }

    static void listLinks(Folder &folder, const char *nativePath)
    {
        const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(nativePath));
        if (!directory)
            return;
        for (;;) {
            errno = 0;
            const struct dirent64 *entry = ::readdir64(directory.get());
            if (!entry)
                break;
            if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN)
                folder.links.insert(QFile::decodeName(entry->d_name));
        }
        folder.isListed = errno == 0;
    }

    static bool mayBeLink(const Folder &folder, const QString &path, QStringView name)
    {
        if (folder.isListed)
            return !folder.links.isEmpty() && folder.links.contains(name.toString());
        struct stat status;
        return ::lstat(QFile::encodeName(path).constData(), &status) != 0 || S_ISLNK(status.st_mode);
    }

    struct Hash
    {
        std::size_t operator()(QStringView path) const { return qHash(path); }
    };

    std::unordered_map<QStringView, Folder, Hash> m_folders;
    Folder *m_last = nullptr;
    QStringView m_lastPath;
    QString m_canonical;
};

/** Places in the list, front to back. */
class Places
{
public:
    void append(qsizetype place) { m_places.push_back(place); }

    /** The first place that is not removed yet; @p end when there is none. */
    qsizetype first(const std::vector<bool> &removed, qsizetype end)
    {
        while (m_next < m_places.size() && removed[std::size_t(m_places[m_next])])
            ++m_next;
        return m_next < m_places.size() ? m_places[m_next] : end;
    }

private:
    std::vector<qsizetype> m_places;
    std::size_t m_next = 0;
};

struct PlacesOfPath
{
    Places given; // of files with this path
    Places canonical; // of files with this canonical path
};

} // namespace

void NyFirstEqualFileRemover::removeFrom(QList<QFileInfo> &files, const QList<QFileInfo> &unwanted)
{
    if (files.isEmpty() || unwanted.isEmpty())
        return;

    QList<QString> unwantedPaths;
    unwantedPaths.reserve(unwanted.size());
    for (const QFileInfo &file : unwanted)
        unwantedPaths.append(file.filePath());
    QList<QString> paths;
    paths.reserve(files.size());
    for (const QFileInfo &file : std::as_const(files))
        paths.append(file.filePath());

    CanonicalPaths canonicalPaths;
    for (const QString &path : std::as_const(unwantedPaths))
        canonicalPaths.announce(path);
    for (const QString &path : std::as_const(paths))
        canonicalPaths.announce(path);

    // Only what is unwanted is indexed; the files are then looked up one by one.
    QHash<QStringView, PlacesOfPath> places;
    QList<QString> unwantedCanonicalPaths(unwanted.size());
    bool someAreGone = false;
    for (qsizetype i = 0; i < unwanted.size(); ++i) {
        if (isSpecial(unwantedPaths.at(i)))
            continue;
        const bool exists = unwanted.at(i).exists();
        someAreGone = someAreGone || !exists;
        unwantedCanonicalPaths[i]
            = exists ? canonicalPaths.canonicalPath(unwanted.at(i), unwantedPaths.at(i)) : unwanted.at(i).canonicalFilePath();
        places.insert(unwantedPaths.at(i), {});
        places.insert(unwantedCanonicalPaths.at(i), {});
    }

    std::vector<qsizetype> specialPlaces;
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QString &path = paths.at(i);
        if (isSpecial(path)) {
            specialPlaces.push_back(i);
            continue;
        }
        const auto ofPath = places.find(path);
        if (ofPath != places.end())
            ofPath->given.append(i);
        // A file that is gone equals only those that are gone too, so its existence matters only beside such ones.
        const QString asked = someAreGone ? files.at(i).canonicalFilePath() : QString();
        const QString &canonical = someAreGone ? asked : canonicalPaths.canonicalPath(files.at(i), path);
        const auto ofCanonical = &canonical == &path ? ofPath : places.find(canonical);
        if (ofCanonical != places.end())
            ofCanonical->canonical.append(i);
    }

    std::vector<bool> removed(std::size_t(files.size()), false);
    const auto firstEqual = [&](qsizetype unwantedIndex) {
        const QFileInfo &file = unwanted.at(unwantedIndex);
        const qsizetype end = files.size();
        if (isSpecial(unwantedPaths.at(unwantedIndex))) {
            for (qsizetype i = 0; i < end; ++i) {
                if (!removed[std::size_t(i)] && files.at(i) == file)
                    return i;
            }
            return end;
        }
        qsizetype first = std::min(places[unwantedPaths.at(unwantedIndex)].given.first(removed, end),
            places[unwantedCanonicalPaths.at(unwantedIndex)].canonical.first(removed, end));
        for (const qsizetype place : specialPlaces) {
            if (place >= first)
                break;
            if (!removed[std::size_t(place)] && files.at(place) == file)
                first = place;
        }
        return first;
    };
    for (qsizetype i = 0; i < unwanted.size(); ++i) {
        const qsizetype place = firstEqual(i);
        if (place < files.size())
            removed[std::size_t(place)] = true;
    }

    // The list stays shared with its copies when nothing goes.
    if (std::find(removed.cbegin(), removed.cend(), true) == removed.cend())
        return;
    qsizetype kept = 0;
    for (qsizetype i = 0; i < files.size(); ++i) {
        if (removed[std::size_t(i)])
            continue;
        if (kept != i)
            files.swapItemsAt(kept, i);
        ++kept;
    }
    files.resize(kept);
}

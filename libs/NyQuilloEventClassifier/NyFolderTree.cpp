#include "NyFolderTree.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <QtCore/QFile>
#include <QtCore/QStringDecoder>

#include <NyDirectoryConfig.h>
#include <NyOnceWarning.h>

#include <dirent.h>
#include <sys/stat.h>

namespace
{

struct DirectoryCloser
{
    void operator()(DIR *directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

struct FileId
{
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileId &) const = default;
};

struct FileIdHash
{
    size_t operator()(const FileId &id) const noexcept { return std::hash<quint64>()(id.inode * 0x9e3779b97f4a7c15ULL ^ id.device); }
};

bool isAscii(const char *text)
{
    for (; *text; ++text) {
        if (static_cast<unsigned char>(*text) >= 0x80)
            return false;
    }
    return true;
}

/** The name as text; null when it is not valid UTF-8. */
QString decodedName(const char *name)
{
    if (isAscii(name))
        return QString::fromLatin1(name);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(name));
    return decoder.hasError() ? QString() : decoded;
}

bool isValidName(const char *name)
{
    return isAscii(name) || !decodedName(name).isNull();
}

QString readable(const QByteArray &name)
{
    return QString::fromLatin1(name.toPercentEncoding(" ()[]{}!#$&'+,;=@"));
}

QString childPath(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool hasSuffix(const char *name, const QList<QByteArray> &suffixes)
{
    const char *dot = std::strrchr(name, '.');
    if (!dot || dot == name)
        return false;
    const size_t length = std::strlen(dot + 1);
    char lower[16];
    if (length == 0 || length >= sizeof lower)
        return false;
    for (size_t at = 0; at < length; ++at) {
        const char c = dot[1 + at];
        lower[at] = c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
    }
    return std::binary_search(suffixes.begin(), suffixes.end(), QByteArray::fromRawData(lower, qsizetype(length)));
}

bool isFolder(const QByteArray &path)
{
    struct stat status;
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isFile(const QByteArray &path)
{
    struct stat status;
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

class NyFolderTree::Walker
{
public:
    Walker(NyFolderTree &tree, Pictures pictures)
        : m_tree(tree)
        , m_countsPictures(pictures == Pictures::Count)
    {
    }

    void walk(const QStringList &startPaths)
    {
        for (const QString &startPath : startPaths) {
            if (!m_config.isIgnorableFolder(startPath, false))
                readAll(-1, startPath.section(QLatin1Char('/'), -1), startPath);
        }
        while (!m_links.empty()) {
            std::vector<Link> links = std::move(m_links);
            m_links.clear();
            std::sort(links.begin(), links.end(), [](const Link &left, const Link &right) { return left.path < right.path; });
            for (const Link &link : links)
                readAll(link.parent, link.name, link.path);
        }
        finish();
    }

private:
    struct Link
    {
        int parent = 0;
        QString name;
        QString path;
    };
    struct Listing
    {
        int pictures = 0;
        bool hasProjectFiles = false;
        std::vector<QString> subfolders;
        std::vector<QString> links;
    };

    /** Reads a folder and the real folders below it. */
    void readAll(int parent, const QString &name, const QString &path)
    {
        std::vector<Link> pending{{parent, name, path}};
        while (!pending.empty()) {
            const Link next = std::move(pending.back());
            pending.pop_back();
            Listing listing;
            if (!read(next.path, next.parent < 0, &listing))
                continue;
            const int index = int(m_tree.m_folders.size());
            m_tree.m_folders.append(Folder{next.name, next.path, next.parent, {}, listing.pictures > 0, false, listing.hasProjectFiles,
                m_countsPictures ? listing.pictures : 0});
            if (next.parent >= 0)
                m_tree.m_folders[next.parent].children.append(index);
            for (const QString &link : listing.links)
                m_links.push_back({index, link, childPath(next.path, link)});
            // The stack is emptied from its end, so that folders are read in the order of their names.
            std::sort(listing.subfolders.begin(), listing.subfolders.end(),
                [](const QString &left, const QString &right) { return right < left; });
            for (const QString &subfolder : listing.subfolders)
                pending.push_back({index, subfolder, childPath(next.path, subfolder)});
        }
    }

    /** Lists one folder. Returns false when it is ignorable, was entered already or cannot be opened. */
    bool read(const QString &path, bool isStart, Listing *listing)
    {
        const QByteArray nativePath = QFile::encodeName(path);
        const Directory directory(::opendir(nativePath.constData()));
        if (!directory) {
            const int error = errno;
            // A folder that went away while its parent was read is nothing to warn of.
            if (error != ENOENT || isStart)
                NyOnceWarning::warn(QStringLiteral("Folder cannot be classified: ") + path + QStringLiteral(": ")
                    + QString::fromLocal8Bit(std::strerror(error)));
            return false;
        }
        struct stat status;
        if (::fstat(::dirfd(directory.get()), &status) != 0 || !m_entered.insert({status.st_dev, status.st_ino}).second)
            return false;

        for (;;) {
            errno = 0;
            const struct dirent *entry = ::readdir(directory.get());
            if (!entry) {
                if (errno != 0)
                    NyOnceWarning::warn(QStringLiteral("Folder cannot be read to its end: ") + path + QStringLiteral(": ")
                        + QString::fromLocal8Bit(std::strerror(errno)));
                return true;
            }
            const char *name = entry->d_name;
            unsigned char type = entry->d_type;
            const auto fullPath = [&nativePath, name]() { return nativePath + '/' + name; };
            if (name[0] == '.') {
                if (type != DT_DIR && NyDirectoryConfig::isIgnoreMarkerName(QString::fromLatin1(name))
                    && (type == DT_REG || isFile(fullPath())))
                    return false;
                continue;
            }
            if (type == DT_UNKNOWN) {
                struct stat own;
                if (::lstat(fullPath().constData(), &own) != 0)
                    continue;
                type = S_ISDIR(own.st_mode) ? DT_DIR : S_ISREG(own.st_mode) ? DT_REG : S_ISLNK(own.st_mode) ? DT_LNK : DT_FIFO;
            }
            if (type == DT_REG || type == DT_LNK) {
                const bool picture = (m_countsPictures || listing->pictures == 0) && hasSuffix(name, m_tree.m_suffixes);
                const bool project = !listing->hasProjectFiles && hasSuffix(name, m_projectSuffixes);
                if ((picture || project) && (type == DT_REG || isFile(fullPath())) && isValidName(name)) {
                    listing->pictures += picture ? 1 : 0;
                    listing->hasProjectFiles = listing->hasProjectFiles || project;
                }
            }
            if (type != DT_DIR && !(type == DT_LNK && isFolder(fullPath())))
                continue;
            const QString decoded = decodedName(name);
            if (decoded.isNull()) {
                NyOnceWarning::warn(
                    QStringLiteral("Folder name is not valid UTF-8, it is left out: ") + path + QLatin1Char('/') + readable(name));
                continue;
            }
            if (NyDirectoryConfig::isIgnorableFolderName(decoded) || m_config.isOwnDataFolder(childPath(path, decoded)))
                continue;
            (type == DT_LNK ? listing->links : listing->subfolders).push_back(decoded);
        }
    }

    void finish()
    {
        QList<Folder> &folders = m_tree.m_folders;
        for (Folder &folder : folders)
            std::sort(folder.children.begin(), folder.children.end(),
                [&folders](int a, int b) { return folders.at(a).name < folders.at(b).name; });
        // A folder always stands behind its parent.
        for (qsizetype index = folders.size() - 1; index >= 0; --index) {
            Folder &folder = folders[index];
            folder.hasPicturesBelow = folder.hasOwnPictures;
            for (const int child : std::as_const(folder.children))
                folder.hasPicturesBelow = folder.hasPicturesBelow || folders.at(child).hasPicturesBelow;
        }
    }

    NyFolderTree &m_tree;
    const bool m_countsPictures;
    const NyDirectoryConfig &m_config = NyDirectoryConfig::instance();
    const QList<QByteArray> m_projectSuffixes{QByteArrayLiteral("nqp"), QByteArrayLiteral("nqpx")};
    std::unordered_set<FileId, FileIdHash> m_entered;
    std::vector<Link> m_links;
};

NyFolderTree::NyFolderTree(const QString &startPath, const QStringList &pictureFilters)
    : NyFolderTree(QStringList{startPath}, pictureFilters, Pictures::Find)
{
}

NyFolderTree::NyFolderTree(const QStringList &startPaths, const QStringList &pictureFilters, Pictures pictures)
{
    for (const QString &filter : pictureFilters) {
        if (filter.startsWith(QLatin1String("*.")))
            m_suffixes.append(filter.mid(2).toLower().toUtf8());
    }
    std::sort(m_suffixes.begin(), m_suffixes.end());
    Walker(*this, pictures).walk(startPaths);
}

QStringList NyFolderTree::samplePictures(const QList<int> &folders, int maximum) const
{
    // Camera folders hold many thousands of pictures: all names lie in one buffer, and only those that are asked for become text.
    struct Entry
    {
        int folder = 0;
        size_t name = 0;
    };
    std::string names;
    std::vector<Entry> entries;
    for (const int folder : folders) {
        const Directory directory(::opendir(QFile::encodeName(m_folders.at(folder).path).constData()));
        if (!directory)
            continue;
        const auto first = std::ptrdiff_t(entries.size());
        while (const struct dirent *entry = ::readdir(directory.get())) {
            if (entry->d_name[0] == '.' || entry->d_type == DT_DIR || !hasSuffix(entry->d_name, m_suffixes) || !isValidName(entry->d_name))
                continue;
            entries.push_back({folder, names.size()});
            names.append(entry->d_name, std::strlen(entry->d_name) + 1);
        }
        std::sort(entries.begin() + first, entries.end(), [&names](const Entry &left, const Entry &right) {
            return std::strcmp(names.data() + left.name, names.data() + right.name) < 0;
        });
    }

    QStringList paths;
    const size_t count = std::min(entries.size(), size_t(std::max(maximum, 0)));
    paths.reserve(qsizetype(count));
    for (size_t sample = 0; sample < count; ++sample) {
        const Entry &entry = entries[count > 1 ? sample * (entries.size() - 1) / (count - 1) : 0];
        paths.append(childPath(m_folders.at(entry.folder).path, decodedName(names.data() + entry.name)));
    }
    return paths;
}

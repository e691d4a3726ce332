#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QtCore/QByteArrayList>
#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QString>

#include "NyBirthTimeWindow.h"
#include "NyFileNameFilter.h"
#include "nyquilloservice_export.h"

/**
 * Collects the files of a local folder tree that were born inside a window, straight from the system's directory and file
 * information: an object per file is made only for those that are kept.
 *
 * It finds what recursive calls of QDir::entryInfoList() find that ask for the files of the name filter and for all folders,
 * links followed, hidden entries left out, and leaves out what NyDirectoryConfig::isIgnorableFolder() names. Names that
 * are not valid UTF-8 can not be told to Qt and are left out, as QDir does.
 *
 * A link to a folder above itself is followed until the system refuses the path. That holds for one such link, the first
 * in the order of names; what lies behind a second one is found at its own place anyway, and following both would not end.
 * For the same reason no folder is entered more than MaximumVisitsBehindLinks times by ways that lead over links.
 *
 * One object serves one walk, on one thread. Closing down of the application ends the walk before the next folder.
 */
class NYQUILLOSERVICE_EXPORT NyNativeFileWalker
{
public:
    static constexpr int MaximumVisitsBehindLinks = 64;

    /**
     * @p reportedFolders holds the folders for which a fault was logged already; those found now are logged and
     * added. The arguments must outlive the walker.
     */
    NyNativeFileWalker(const NyFileNameFilter &filter, const NyBirthTimeWindow &window, QSet<QString> *reportedFolders);

    /** False for paths that Qt may resolve in another way: resources, search paths and other prefixes with a colon. */
    static bool canWalk(const QString &path);

    void walk(const QString &path);

    /** The kept files, oldest birth time first, by path where it is the same. Empties the walker. */
    QList<QFileInfo> takeFiles();
    /** How many matching files were born after the window. They are not kept. */
    int countAfterWindow() const { return m_countAfterWindow; }
    /** Whether the first folder has a subfolder, be it left out or not. */
    bool hasSubfolders() const { return m_hasSubfolders; }
    /** Whether the application's closing down has ended the walk early, at the first folder or below. */
    bool isInterrupted() const { return m_isInterrupted; }

private:
    using FileId = std::pair<quint64, quint64>; // device, inode

    struct KeptFile
    {
        qint64 birthTimeMs;
        std::size_t folder; // in m_keptPrefixes
        std::size_t name; // where it begins in m_keptNames
    };
    struct Subfolder
    {
        std::string name;
        std::optional<FileId> linkTarget;
    };
    /** One folder on the way from the first folder to the present one. */
    struct Step
    {
        const Step *above;
        FileId id;
        bool isBehindLink;

        bool contains(FileId folder) const;
    };
    struct Listing
    {
        QString absolutePath;
        QString prefix; // what stands before a file's name
        std::vector<Subfolder> subfolders;
        QByteArrayList undecodableNames;
        bool keepsFiles = false;
        bool hasLinkToSpecialFile = false;
        bool isIgnorable = false;
    };

    void walkFolder(const QString &path, const Step *above, bool isBehindLink);
    bool enterOften(FileId folder);
    void list(int descriptor, Listing &listing);
    void addEntry(int descriptor, const char *name, unsigned char type, Listing &listing);
    void addLink(const char *name, Listing &listing);
    void addFile(qint64 birthTimeMs, const char *name, std::size_t length, Listing &listing);
    bool isBefore(const KeptFile &left, const KeptFile &right) const;
    QString path(const KeptFile &file) const;
    void walkSubfolders(Listing &listing, const Step &step);
    bool mayFollow(const Subfolder &link, const Step &step);
    static bool marksAsIgnorable(const char *name, unsigned char type, const QString &absoluteFolder);
    std::string pathOfEntry(std::string_view name) const;
    void report(const QString &folder, const QString &fault);
    void reportUndecodable(const QString &folder, const QByteArrayList &names);

    const NyFileNameFilter &m_filter;
    const NyBirthTimeWindow &m_window;
    QSet<QString> *m_reportedFolders;
    std::vector<char> m_buffer;
    std::string m_nativePath; // of the folder that is being looked at
    // Small records and bare names: sorting them is cheap, and what is rolled back or too old never became an object.
    std::vector<KeptFile> m_keptFiles;
    std::vector<QString> m_keptPrefixes;
    std::string m_keptNames; // UTF-8, each with a zero at its end
    int m_countAfterWindow = 0;
    bool m_hasSubfolders = false;
    bool m_isInterrupted = false;
    // The one link to a folder above itself that is followed: its folder and its name.
    std::optional<std::pair<FileId, std::string>> m_followedLoop;
    std::map<FileId, int> m_visitsBehindLinks;
};

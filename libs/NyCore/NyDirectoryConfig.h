#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>

#include "NySingleton.h"
#include "nycore_export.h"

/** Where the family keeps its files, and which folders no scan of pictures enters. Thread-safe: nothing changes after construction. */
class NYCORE_EXPORT NyDirectoryConfig : public NySingleton<NyDirectoryConfig>
{
public:
    NyDirectoryConfig();
    ~NyDirectoryConfig() override;

    /** The folder of all proposals. Its path ends with a separator. Not created here. */
    QFileInfo bookProposalFolder() const;
    QString settingsFile() const;
    QString photoListDatabase() const;
    QString logFolder() const;
    QString modelsFolder() const;
    /** Edits of open books that are not saved yet. Not created here. */
    QString recoveryFolder() const;
    /** Held locked by the running service. */
    QString serviceLockFile() const;

    /**
     * Whether scans leave the folder out: hidden folders, trash, thumbnail caches, screenshots, folders with a file
     * ".nomedia" or ".nomemories", the family's own data. Only the folder's own last name counts, not those above it.
     * @p includeSystemFolders also leaves out folders of the operating system, such as /proc, and all below them.
     */
    bool isIgnorableFolder(const QString &absolutePath, bool includeSystemFolders) const;

    /**
     * The parts of isIgnorableFolder() for a walker that has the folder's name and its entries at hand already. A folder is
     * ignorable (without system folders) when its name is, when it is one of ownDataFolders() or lies in one, or
     * when an entry isIgnoreMarkerName() that is a file, links followed.
     */
    static bool isIgnorableFolderName(QStringView name);
    static bool isIgnoreMarkerName(QStringView fileName);
    /** Looks for the markers on the disk. */
    static bool hasIgnoreMarker(const QString &absolutePath);
    /** Absolute paths without a separator at the end. */
    QStringList ownDataFolders() const { return m_ownDataFolders; }
    bool isOwnDataFolder(const QString &absolutePath) const;

    /**
     * The first file of that name in the user's configuration, the system's, the installation's shared data, and the program
     * itself. Empty when there is none. @p fileName may name a subfolder, but never leads out of those places.
     */
    static QString resourceFile(const QString &fileName);

private:
    QString m_dataFolder;
    QString m_configFolder;
    QStringList m_ownDataFolders;
};

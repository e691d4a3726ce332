#include "NyDirectoryConfig.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSet>
#include <QtCore/QStandardPaths>

#include <sys/stat.h>

namespace
{

const QString FamilyFolder = QStringLiteral("/VELMORA");

QString folded(const QString &name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QSet<QString> ignorableNames()
{
    // Trash and recycle folders, as desktops, servers and people call them.
    static constexpr const char16_t *const trash[] = {
        u"$recycle.bin",
        u"recycler",
        u"recycled",
        u"recycle bin",
        u"#recycle",
        u"@recycle",
        u"trash",
        u"trash bin",
        u"trashes",
        u"papierkorb",
        u"corbeille",
        u"prullenbak",
        u"prullenmand",
        u"cestino",
        u"papelera",
        u"papelera de reciclaje",
        u"kosz",
        u"papperskorg",
        u"papperskorgen",
    };
    // What servers, cameras, file systems and archives leave behind.
    static constexpr const char16_t *const technical[] = {
        u"@eadir",
        u"#snapshot",
        u"@recently-snapshot",
        u"__macosx",
        u"lost+found",
        u"system volume information",
    };
    static constexpr const char16_t *const caches[] = {
        u"cache",
        u"caches",
        u"thumbnail",
        u"thumbnails",
        u"thumbs",
        u"thumb",
        u"thumbcache",
        u"thumbnailcache",
        u"thumbnail cache",
        u"previewcache",
        u"preview cache",
        u"_thumbs",
        u"_thumbnails",
        u"vorschaubilder",
        u"miniaturansichten",
    };
    // The screenshot folders of desktops and telephones: de, en, fr, nl, it, es, pl, sv.
    static constexpr const char16_t *const screenshots[] = {
        u"bildschirmfoto",
        u"bildschirmfotos",
        u"bildschirmaufnahme",
        u"bildschirmaufnahmen",
        u"screenshot",
        u"screenshots",
        u"screen shot",
        u"screen shots",
        u"screen capture",
        u"screen captures",
        u"screencaptures",
        u"capture d'\u00e9cran",
        u"captures d'\u00e9cran",
        u"capture d\u2019\u00e9cran",
        u"captures d\u2019\u00e9cran",
        u"schermafbeelding",
        u"schermafbeeldingen",
        u"schermafdruk",
        u"schermafdrukken",
        u"schermopname",
        u"schermopnamen",
        u"schermopnames",
        u"schermata",
        u"schermate",
        u"istantanea schermo",
        u"istantanee schermo",
        u"istantanee dello schermo",
        u"captura de pantalla",
        u"capturas de pantalla",
        u"zrzut ekranu",
        u"zrzuty ekranu",
        u"sk\u00e4rmbild",
        u"sk\u00e4rmbilder",
        u"sk\u00e4rmdump",
        u"sk\u00e4rmdumpar",
        u"sk\u00e4rmklipp",
    };
    QSet<QString> names;
    const auto add = [&names](const auto &list) {
        for (const char16_t *name : list)
            names.insert(folded(QString::fromUtf16(name)));
    };
    add(trash);
    add(technical);
    add(caches);
    add(screenshots);
    return names;
}

bool isAtOrBelow(const QString &path, const QString &folder)
{
    return path.startsWith(folder) && (path.size() == folder.size() || path.at(folder.size()) == QLatin1Char('/'));
}

bool isSystemFolder(const QString &path)
{
    static const QStringList folders{
        QStringLiteral("/proc"),
        QStringLiteral("/sys"),
        QStringLiteral("/dev"),
        QStringLiteral("/run"),
        QStringLiteral("/boot"),
        QStringLiteral("/etc"),
        QStringLiteral("/usr"),
        QStringLiteral("/bin"),
        QStringLiteral("/sbin"),
        QStringLiteral("/lib"),
        QStringLiteral("/lib32"),
        QStringLiteral("/lib64"),
        QStringLiteral("/snap"),
        QStringLiteral("/var"),
    };
    for (const QString &folder : folders) {
        // Removable media are mounted below /run/media.
        if (isAtOrBelow(path, folder) && !isAtOrBelow(path, QStringLiteral("/run/media")))
            return true;
    }
    return false;
}

QString withoutSeparatorAtEnd(const QString &path)
{
    qsizetype length = path.size();
    while (length > 1 && path.at(length - 1) == QLatin1Char('/'))
        --length;
    return path.first(length);
}

bool isRegularFile(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

NyDirectoryConfig::NyDirectoryConfig()
    : m_dataFolder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + FamilyFolder)
    , m_configFolder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + FamilyFolder)
{
    m_ownDataFolders = {
        m_dataFolder,
        m_configFolder,
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + FamilyFolder,
        QStandardPaths::writableLocation(QStandardPaths::TempLocation) + FamilyFolder,
    };
}

NyDirectoryConfig::~NyDirectoryConfig() = default;

QFileInfo NyDirectoryConfig::bookProposalFolder() const
{
    return QFileInfo(m_dataFolder + QStringLiteral("/proposals/"));
}

QString NyDirectoryConfig::settingsFile() const
{
    return m_configFolder + QStringLiteral("/settings.ini");
}

QString NyDirectoryConfig::photoListDatabase() const
{
    return m_dataFolder + QStringLiteral("/photolists.sqlite");
}

QString NyDirectoryConfig::logFolder() const
{
    return m_dataFolder + QStringLiteral("/log");
}

QString NyDirectoryConfig::modelsFolder() const
{
    return m_dataFolder + QStringLiteral("/models");
}

QString NyDirectoryConfig::recoveryFolder() const
{
    return m_dataFolder + QStringLiteral("/recovery");
}

QString NyDirectoryConfig::serviceLockFile() const
{
    return m_dataFolder + QStringLiteral("/quilloservice.lock");
}

bool NyDirectoryConfig::isIgnorableFolder(const QString &absolutePath, bool includeSystemFolders) const
{
    const QString path = withoutSeparatorAtEnd(absolutePath);
    const QStringView name = QStringView(path).sliced(path.lastIndexOf(QLatin1Char('/')) + 1);
    return isIgnorableFolderName(name) || isOwnDataFolder(path) || (includeSystemFolders && isSystemFolder(path)) || hasIgnoreMarker(path);
}

bool NyDirectoryConfig::isIgnorableFolderName(QStringView name)
{
    static const QSet<QString> names = ignorableNames();
    if (name.isEmpty())
        return false;
    if (name.startsWith(QLatin1Char('.')))
        return true;
    if (name.endsWith(QLatin1String(".lrdata"), Qt::CaseInsensitive))
        return true;
    return names.contains(folded(name.toString()));
}

bool NyDirectoryConfig::isIgnoreMarkerName(QStringView fileName)
{
    return fileName == u".nomedia" || fileName == u".nomemories";
}

bool NyDirectoryConfig::hasIgnoreMarker(const QString &absolutePath)
{
    const QString folder = absolutePath.endsWith(QLatin1Char('/')) ? absolutePath : absolutePath + QLatin1Char('/');
    return isRegularFile(folder + QStringLiteral(".nomedia")) || isRegularFile(folder + QStringLiteral(".nomemories"));
}

bool NyDirectoryConfig::isOwnDataFolder(const QString &absolutePath) const
{
    const QString path = withoutSeparatorAtEnd(absolutePath);
    for (const QString &folder : m_ownDataFolders) {
        if (isAtOrBelow(path, folder))
            return true;
    }
    return false;
}

QString NyDirectoryConfig::resourceFile(const QString &fileName)
{
    const QString name = QDir::cleanPath(fileName);
    if (fileName.isEmpty() || QDir::isAbsolutePath(name) || name == u".." || name.startsWith(QStringLiteral("../")))
        return {};
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString &folder : folders)
        folder += FamilyFolder;
    if (QCoreApplication::instance())
        folders.append(QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share") + FamilyFolder));
    folders.append(QStringLiteral(":/velmora"));
    for (const QString &folder : std::as_const(folders)) {
        const QString path = folder + QLatin1Char('/') + name;
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

#include "NyFotoBuilder.h"

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

#include <dirent.h>
#include <sys/stat.h>

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringDecoder>

#include "NyDirectoryConfig.h"
#include "NyImageLoader.h"
#include "NyMediaFormatList.h"
#include "NyOnceWarning.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

/** One walk. QDirIterator would skip names that are no valid UTF-8, and hide that a folder cannot be read. */
class Walk
{
public:
    explicit Walk(NyMediaFormatList formats)
        : m_formats(std::move(formats))
    {
    }

    void addFolder(const QString &root)
    {
        // A stack of our own: the depth of a tree is not limited by the size of the thread's.
        QStringList waiting{root};
        while (!waiting.isEmpty()) {
            const QString folder = waiting.takeLast();
            QStringList subfolders = addFilesOf(folder);
            std::reverse(subfolders.begin(), subfolders.end());
            waiting.append(subfolders);
        }
    }

    const NyFotoList &fotos() const { return m_fotos; }

private:
    // The same folders are walked at every detection of the service.
    static void warnOfFolder(const QString &folder, const QString &fault)
    {
        NyOnceWarning::warn(u"NyFotoBuilder: cannot read the folder %1 %2"_s.arg(QDebug::toString(folder), fault));
    }

    QStringList addFilesOf(const QString &folder)
    {
        const QByteArray nativeFolder = QFile::encodeName(folder);
        struct stat status;
        if (::stat(nativeFolder.constData(), &status) != 0) {
            warnOfFolder(folder, qt_error_string());
            return {};
        }
        if (!m_visited.insert({quint64(status.st_dev), quint64(status.st_ino)}).second)
            return {};
        const std::unique_ptr<DIR, int (*)(DIR *)> directory(::opendir(nativeFolder.constData()), &::closedir);
        if (!directory) {
            warnOfFolder(folder, qt_error_string());
            return {};
        }
        QStringList files;
        QStringList subfolders;
        const QString prefix = folder.endsWith(u'/') ? folder : folder + u'/';
        while (const dirent *entry = ::readdir(directory.get())) {
            const QByteArray nativeName(entry->d_name);
            if (nativeName.startsWith('.'))
                continue;
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            const QString name = decoder(nativeName);
            if (decoder.hasError()) {
                NyOnceWarning::warn(u"NyFotoBuilder: a name in the folder %1 is no valid UTF-8 and is left out: %2"_s.arg(
                    QDebug::toString(folder), QDebug::toString(nativeName.toPercentEncoding())));
                continue;
            }
            unsigned char type = entry->d_type;
            if (type == DT_UNKNOWN || type == DT_LNK) {
                if (::stat((nativeFolder + '/' + nativeName).constData(), &status) != 0)
                    continue;
                type = S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_UNKNOWN;
            }
            if (type == DT_DIR)
                subfolders.append(prefix + name);
            else if (type == DT_REG && m_formats.matches(name))
                files.append(prefix + name);
        }
        std::sort(files.begin(), files.end());
        std::sort(subfolders.begin(), subfolders.end());
        for (const QString &file : std::as_const(files))
            m_fotos.append(NyFoto(QFileInfo(file)));
        subfolders.removeIf([](const QString &subfolder) { return NyDirectoryConfig::instance().isIgnorableFolder(subfolder, false); });
        return subfolders;
    }

    const NyMediaFormatList m_formats;
    NyFotoList m_fotos;
    std::set<std::pair<quint64, quint64>> m_visited;
};

}

NyFotoBuilder::NyFotoBuilder() = default;

NyFotoBuilder::~NyFotoBuilder() = default;

NyFotoList NyFotoBuilder::fotosFromUrl(const QUrl &url)
{
    const NyFoto location(url);
    if (!location.isLocalFile())
        return {};
    const NyMediaFormatList formats = NyImageLoader::instance().supportedMediaFormats();
    const QFileInfo info = location.localFileInfo();
    if (info.isFile())
        return formats.matches(info.fileName()) ? NyFotoList{location} : NyFotoList();
    Walk walk(formats);
    walk.addFolder(info.absoluteFilePath());
    return walk.fotos();
}

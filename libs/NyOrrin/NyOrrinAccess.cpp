#include "NyOrrinAccess.h"

#include <mutex>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QResource>

#include <NyDirectoryConfig.h>
#include <OrrinEngine.h>

#include "NyOrrinHome.h"

namespace
{

const QString BuiltInModels = QStringLiteral(":/velmora/models");

void logLine(orrin::LogLevel level, const std::string &text)
{
    const QString line = QString::fromStdString(text);
    if (level == orrin::LogLevel::Warning)
        qWarning().noquote() << line;
    else
        qInfo().noquote() << line;
}

std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(QFile::encodeName(path).toStdString());
}

} // namespace

class NyOrrinAccess::Private
{
public:
    orrin::Engine &engine()
    {
        std::call_once(m_once, [this] { m_engine = std::make_unique<orrin::Engine>(models(), orrin::Engine::Options{}, logLine); });
        return *m_engine;
    }

    const std::shared_ptr<NyOrrinHome> home = std::make_shared<NyOrrinHome>();

private:
    std::vector<orrin::ModelSource> models()
    {
        std::vector<orrin::ModelSource> sources = orrin::ModelSource::allIn(nativePath(NyDirectoryConfig::instance().modelsFolder()));
        const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/VELMORA/models");
        for (orrin::ModelSource &source : orrin::ModelSource::allIn(nativePath(QDir::cleanPath(installed))))
            sources.push_back(std::move(source));
        const QStringList builtIn = QDir(BuiltInModels).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString &name : builtIn)
            sources.push_back(builtInModel(BuiltInModels + u'/' + name));
        return sources;
    }

    orrin::ModelSource builtInModel(const QString &folder)
    {
        std::vector<std::pair<std::string, std::string_view>> files;
        const QStringList names = QDir(folder).entryList(QDir::Files);
        for (const QString &name : names) {
            const QByteArray &content = m_builtIn.emplace_back(QResource(folder + u'/' + name).uncompressedData());
            files.emplace_back(name.toStdString(), std::string_view(content.constData(), static_cast<std::size_t>(content.size())));
        }
        return orrin::ModelSource::inMemory(folder.toStdString(), std::move(files));
    }

    std::once_flag m_once;
    /** What the engine's models in memory point into: the program's own pages, or bytes that do not move with the list. */
    std::vector<QByteArray> m_builtIn;
    std::unique_ptr<orrin::Engine> m_engine;
};

NyOrrinAccess::NyOrrinAccess()
    : d(std::make_unique<Private>())
{
}

NyOrrinAccess::~NyOrrinAccess() = default;

bool NyOrrinAccess::process(const QImage &image, NyOrrinVisionDescriptorsBuilder &descriptors)
{
    descriptors.setDescriptors({});
    const QImage pixels = image.convertToFormat(QImage::Format_RGB888);
    if (pixels.isNull())
        return false;
    orrin::Descriptors seen = d->engine().describe({pixels.constBits(), pixels.width(), pixels.height(), pixels.bytesPerLine()});
    const bool isValid = seen.isValid;
    descriptors.setDescriptors(std::move(seen));
    return isValid;
}

NyOrrinCurator NyOrrinAccess::getCurator() const
{
    return NyOrrinCurator(d->home);
}

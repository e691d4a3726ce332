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

/**
 * The picture as three bytes a pixel. What a photo is decoded to goes into memory that the thread keeps: new memory for each photo costs
 * as much as all the rest that is not the model.
 */
class Pixels
{
public:
    explicit Pixels(const QImage &image)
    {
        if (image.format() != QImage::Format_RGB32) {
            m_converted = image.convertToFormat(QImage::Format_RGB888);
            m_view = {m_converted.constBits(), m_converted.width(), m_converted.height(), m_converted.bytesPerLine()};
            return;
        }
        thread_local std::vector<uchar> kept;
        const auto bytesPerLine = static_cast<std::size_t>(image.width()) * 3;
        const std::size_t needed = bytesPerLine * static_cast<std::size_t>(image.height());
        // A large picture's memory is not held for the small ones after it.
        if (kept.size() < needed || kept.size() > 4 * needed)
            kept = std::vector<uchar>(needed);
        for (int y = 0; y < image.height(); ++y) {
            const auto *in = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            uchar *out = kept.data() + bytesPerLine * static_cast<std::size_t>(y);
            for (int x = 0; x < image.width(); ++x, out += 3) {
                out[0] = static_cast<uchar>(qRed(in[x]));
                out[1] = static_cast<uchar>(qGreen(in[x]));
                out[2] = static_cast<uchar>(qBlue(in[x]));
            }
        }
        m_view = {kept.data(), image.width(), image.height(), static_cast<std::ptrdiff_t>(bytesPerLine)};
    }

    /** Valid until the thread's next one is made. */
    const orrin::ImageView &view() const { return m_view; }

private:
    QImage m_converted;
    orrin::ImageView m_view;
};

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
    const Pixels pixels(image);
    if (!pixels.view().isValid())
        return false;
    orrin::Descriptors seen = d->engine().describe(pixels.view());
    const bool isValid = seen.isValid;
    descriptors.setDescriptors(std::move(seen));
    return isValid;
}

NyOrrinCurator NyOrrinAccess::getCurator() const
{
    return NyOrrinCurator(d->home);
}

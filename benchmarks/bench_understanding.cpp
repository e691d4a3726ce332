// What looking at a photo costs, beside the bare run of the same model with its input laid out already.
//
// Usage: bench_understanding [--rounds N] [MODELFOLDER]. Without a folder it takes the built-in model, and one of the size that phones
// run, which /usr/bin/python3 with its module onnx writes.

#include <NyOrrinAccess.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <NyDirectoryConfig.h>
#include <OrrinImageStatistics.h>
#include <OrrinModelConfig.h>
#include <OrrinPreprocessor.h>
#include <OrrinSession.h>

#include "Measurement.h"

namespace
{
constexpr int photosARound = 20;

/** A photo as the library asks for it: with edges, slopes and noise. */
QImage paintedPhoto(int number, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(static_cast<quint32>(number));
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(80, 140, 220));
    sky.setColorAt(1, QColor(200, 190, 150));
    painter.fillRect(image.rect(), sky);
    for (int i = 0; i < 300; ++i)
        painter.fillRect(random.bounded(size.width()), random.bounded(size.height()), 3 + random.bounded(20), 3 + random.bounded(20),
            QColor::fromHsv(random.bounded(360), random.bounded(200), random.bounded(256)));
    return image;
}

/** The model alone: one session, whose input is the next photo each time, laid out before the clock runs. */
class BareRun
{
public:
    explicit BareRun(const orrin::ModelSource &source)
    {
        const orrin::LogCallback quiet = [](orrin::LogLevel, const std::string &text) { std::fprintf(stderr, "%s\n", text.c_str()); };
        const std::optional<orrin::ModelConfig> config = orrin::ModelConfig::read(source, quiet);
        if (!config)
            return;
        orrin::Preprocessor preprocessor(*config);
        m_input.resize(preprocessor.valueCount());
        for (int i = 0; i < photosARound; ++i) {
            const QImage photo = paintedPhoto(i, QSize(224, 224)).convertToFormat(QImage::Format_RGB888);
            preprocessor.fill({photo.constBits(), photo.width(), photo.height(), static_cast<std::ptrdiff_t>(photo.bytesPerLine())},
                m_prepared.emplace_back(preprocessor.valueCount()).data());
        }
        const std::int64_t width = config->inputWidthPx;
        const std::int64_t height = config->inputHeightPx;
        const std::vector<std::int64_t> shape = config->layout == orrin::ModelConfig::Layout::Nchw
            ? std::vector<std::int64_t>{1, 3, height, width}
            : std::vector<std::int64_t>{1, height, width, 3};
        m_outputs = {config->scoresOutput.empty() ? config->embeddingOutput : config->scoresOutput};
        std::string error;
        m_session = orrin::Session::load(source, config->file, 1, error);
        if (m_session
            && !m_session->bindInput(
                config->inputName, orrin::Session::ElementType::Float, m_input.data(), m_input.size() * sizeof(float), shape, error))
            m_session.reset();
        if (!m_session)
            std::fprintf(stderr, "%s\n", error.c_str());
    }

    bool isUsable() const { return m_session != nullptr; }
    void prepare(int photo) { m_input = m_prepared.at(static_cast<std::size_t>(photo)); }
    void run()
    {
        std::string error;
        if (!m_session->run(m_outputs, m_results, error))
            qFatal("%s", error.c_str());
    }

private:
    std::vector<float> m_input;
    std::vector<std::vector<float>> m_prepared;
    std::vector<std::string> m_outputs;
    std::vector<std::vector<float>> m_results;
    std::unique_ptr<orrin::Session> m_session;
};

void compare(const char *title, BareRun &bare, NyOrrinAccess &access, int rounds)
{
    std::printf("%s, %d photos a round, median of %d rounds, processor time\n", title, photosARound, rounds);
    Measurement times;
    times.add("the model's bare run", [&] {
        double total = 0.0;
        for (int i = 0; i < photosARound; ++i) {
            bare.prepare(i);
            total += Measurement::processorMilliseconds([&] { bare.run(); });
        }
        return total;
    });
    // The aspect ratios that a box of 224 by 224 gives.
    for (const QSize size : {QSize(224, 224), QSize(224, 168), QSize(126, 224)}) {
        std::vector<QImage> photos;
        for (int i = 0; i < photosARound; ++i)
            photos.push_back(paintedPhoto(i, size));
        const std::string shape = std::to_string(size.width()) + " x " + std::to_string(size.height());
        times.add("NyOrrinAccess::process, " + shape, [photos, &access] {
            return Measurement::processorMilliseconds([&] {
                for (const QImage &photo : photos) {
                    NyOrrinVisionDescriptorsBuilder descriptors;
                    if (!access.process(photo, descriptors))
                        qFatal("a photo was not looked at");
                }
            });
        });
    }
    times.run(rounds);
    times.print("the model's bare run");
    const double unit = times.median("the model's bare run");
    std::printf("ratio at 224 x 224: %.3f, limit 1.1; over the bare run: %.3f ms a photo\n\n",
        times.median("NyOrrinAccess::process, 224 x 224") / unit,
        (times.median("NyOrrinAccess::process, 224 x 224") - unit) / photosARound);
}

/** What the parts beside the model cost. */
void measureParts(int rounds)
{
    const QImage photo = paintedPhoto(1, QSize(224, 224));
    const QImage pixels = photo.convertToFormat(QImage::Format_RGB888);
    const orrin::ImageView view{pixels.constBits(), pixels.width(), pixels.height(), static_cast<std::ptrdiff_t>(pixels.bytesPerLine())};
    orrin::ModelConfig config;
    config.inputWidthPx = 224;
    config.inputHeightPx = 224;
    orrin::Preprocessor preprocessor(config);
    std::vector<float> values(preprocessor.valueCount());
    Measurement times;
    const auto add = [&times](const char *name, const std::function<void()> &work) {
        times.add(name, [work] {
            return Measurement::processorMilliseconds([&] {
                for (int i = 0; i < photosARound; ++i)
                    work();
            });
        });
    };
    add("conversion to 24 bits", [&] { (void)photo.convertToFormat(QImage::Format_RGB888).constBits(); });
    add("descriptors that need no model", [&] { (void)orrin::ImageStatistics::describe(view); });
    add("input of 224 x 224 laid out", [&] { preprocessor.fill(view, values.data()); });
    times.run(rounds);
    std::printf("beside the model, %d photos\n", photosARound);
    times.print("conversion to 24 bits");
}
}

int main(int argc, char **argv)
{
    // The user's own models stay out of it.
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype index = arguments.indexOf(QStringLiteral("--rounds"));
    const int rounds = index >= 0 && index + 1 < arguments.size() ? arguments.at(index + 1).toInt() : 15;
    if (!orrin::Session::isRuntimeUsable()) {
        std::fprintf(stderr, "ONNX Runtime cannot be used\n");
        return 1;
    }
    measureParts(rounds);

    const QStringList folders = arguments.filter(QStringLiteral("/")).mid(1);
    if (!folders.isEmpty()) {
        const QString models = NyDirectoryConfig::instance().modelsFolder();
        const QString folder = QFileInfo(folders.last()).absoluteFilePath();
        if (!QDir().mkpath(models) || !QFile::link(folder, models + QStringLiteral("/given")))
            return 1;
        BareRun bare(orrin::ModelSource::inFolder(QFile::encodeName(folder).toStdString()));
        NyOrrinAccess access;
        if (!bare.isUsable())
            return 1;
        compare("given model", bare, access, rounds);
        return 0;
    }

    const QStringList builtIn = QDir(QStringLiteral(":/velmora/models")).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    if (builtIn.isEmpty()) {
        std::printf("no model is built in\n\n");
    } else {
        std::vector<QByteArray> contents;
        std::vector<std::pair<std::string, std::string_view>> files;
        const QDir folder(QStringLiteral(":/velmora/models/") + builtIn.first());
        const QStringList names = folder.entryList(QDir::Files);
        contents.reserve(static_cast<std::size_t>(names.size()));
        for (const QString &name : names) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const QByteArray &content = contents.emplace_back(file.readAll());
            files.emplace_back(name.toStdString(), std::string_view(content.constData(), static_cast<std::size_t>(content.size())));
        }
        BareRun bare(orrin::ModelSource::inMemory("built-in", files));
        NyOrrinAccess access;
        if (bare.isUsable())
            compare("built-in model", bare, access, rounds);
    }

    const QString mobile = NyDirectoryConfig::instance().modelsFolder() + QStringLiteral("/mobile");
    if (QProcess::execute(QStringLiteral("/usr/bin/python3"), {QStringLiteral(MOBILE_MODEL_SCRIPT), mobile}) != 0)
        return 1;
    BareRun bare(orrin::ModelSource::inFolder(QFile::encodeName(mobile).toStdString()));
    NyOrrinAccess access;
    if (!bare.isUsable())
        return 1;
    compare("model of the size that phones run", bare, access, rounds);
    return 0;
}

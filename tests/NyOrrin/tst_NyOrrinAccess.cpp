#include <NyOrrinAccess.h>
#include <NyOrrinMediaItemBuilder.h>

#include <atomic>
#include <memory>
#include <vector>

#include <QImage>
#include <QTest>
#include <QThread>

#include <NyDirectoryConfig.h>
#include <OrrinSession.h>

#include "OrrinTestModels.h"
#include "TestSupport.h"

class tst_NyOrrinAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void nullPicture();
    void withoutUsersModel();
    void picturesOfAllFormats_data();
    void picturesOfAllFormats();
    void usersModel();
    void brokenModel();
    void loadedLateAndOnce();
    void curatorsShareTheHome();
    void singleton();

private:
    /** Makes the user's model "mine", which gives the mean of each colour. */
    void installModel();
    static int threadCount() { return int(QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size()); }
    static QString modelsFolder() { return NyDirectoryConfig::instance().modelsFolder(); }
    OrrinTestModels m_models;
};

void tst_NyOrrinAccess::initTestCase()
{
    if (orrin::Session::isRuntimeUsable()) {
        const QString problem = m_models.prepare();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
    // The test's own home.
    QVERIFY(modelsFolder().startsWith(qEnvironmentVariable("HOME")));
}

void tst_NyOrrinAccess::cleanup()
{
    QVERIFY(QDir(modelsFolder()).removeRecursively());
}

void tst_NyOrrinAccess::nullPicture()
{
    NyOrrinAccess access;
    NyOrrinVisionDescriptorsBuilder builder;
    orrin::Descriptors before;
    before.isValid = true;
    builder.setDescriptors(before);
    QVERIFY(!access.process(QImage(), builder));
    QVERIFY(!builder.build().isValid());
}

void tst_NyOrrinAccess::withoutUsersModel()
{
    const TestSupport::LogRecorder log;
    NyOrrinAccess access;
    NyOrrinVisionDescriptorsBuilder builder;
    QImage image(224, 150, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(access.process(image, builder));
    QVERIFY(access.process(image, builder));
    QVERIFY(builder.build().isValid());
    const bool hasRuntime = orrin::Session::isRuntimeUsable();
    QCOMPARE(builder.build().descriptors().occasions.empty(), !hasRuntime);
    QCOMPARE(log.containing(QStringLiteral("uses the model :/velmora/models/")).size(), hasRuntime ? 1 : 0);
    QCOMPARE(log.containing(QStringLiteral("no usable model")).size(), hasRuntime ? 0 : 1);
}

void tst_NyOrrinAccess::picturesOfAllFormats_data()
{
    QTest::addColumn<int>("format");
    for (const QImage::Format format : {QImage::Format_Indexed8, QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_RGB888,
             QImage::Format_RGB16, QImage::Format_RGBA64, QImage::Format_RGBA8888_Premultiplied})
        QTest::newRow(qPrintable(QString::number(format))) << int(format);
}

void tst_NyOrrinAccess::picturesOfAllFormats()
{
    QFETCH(int, format);
    NyOrrinAccess access;
    NyOrrinVisionDescriptorsBuilder builder;
    // A width that pads the rows.
    QImage image(31, 20, QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QVERIFY(access.process(image.convertToFormat(static_cast<QImage::Format>(format)), builder));
    const std::array<float, 27> signature = builder.build().descriptors().colorSignature;
    QVERIFY(signature[0] > 0.95F && signature[1] < 0.05F && signature[26] < 0.05F);
}

void tst_NyOrrinAccess::installModel()
{
    QJsonObject config = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    config[QStringLiteral("occasions")] = QJsonObject{{QStringLiteral("blue"), QStringLiteral("beach")}};
    const QString made = QString::fromStdString(m_models.add(QStringLiteral("mine"), config).string());
    QVERIFY(QDir().mkpath(modelsFolder() + QStringLiteral("/mine")));
    for (const QString &file : {QStringLiteral("/model.json"), QStringLiteral("/means.onnx")})
        QVERIFY(QFile::copy(made + file, modelsFolder() + QStringLiteral("/mine") + file));
}

void tst_NyOrrinAccess::usersModel()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("there is no ONNX Runtime on this machine");
    installModel();

    const TestSupport::LogRecorder log;
    NyOrrinAccess access;
    NyOrrinVisionDescriptorsBuilder builder;
    QImage image(224, 150, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QVERIFY(access.process(image, builder));
    const orrin::Descriptors seen = builder.build().descriptors();
    QCOMPARE(seen.scenes.size(), std::size_t{3});
    QCOMPARE(seen.occasions.size(), std::size_t{1});
    QVERIFY(seen.occasions[0].probability > 0.99F);
    QCOMPARE(log.containing(QStringLiteral("uses the model ") + modelsFolder() + QStringLiteral("/mine")).size(), 1);
}

void tst_NyOrrinAccess::brokenModel()
{
    QVERIFY(QDir().mkpath(modelsFolder() + QStringLiteral("/broken")));
    QFile file(modelsFolder() + QStringLiteral("/broken/model.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\"file\": 7}");
    file.close();
    const TestSupport::LogRecorder log;
    NyOrrinAccess access;
    NyOrrinVisionDescriptorsBuilder builder;
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QVERIFY(access.process(image, builder));
    QVERIFY(log.has(QStringLiteral("warning: ") + file.fileName() + QStringLiteral(": \"file\" must be a text, but is 7")));
    if (orrin::Session::isRuntimeUsable())
        QCOMPARE(log.containing(QStringLiteral("uses the model :/velmora/models/")).size(), 1);
}

void tst_NyOrrinAccess::loadedLateAndOnce()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("there is no ONNX Runtime on this machine");
    installModel();
    const TestSupport::LogRecorder log;
    const QString line = QStringLiteral("image understanding uses the model");
    const int threads = threadCount();
    // All that a program does without a photo to look at.
    NyOrrinAccess &access = NySingleton<NyOrrinAccess>::instance();
    const NyOrrinCurator curator = access.getCurator();
    QVERIFY(curator.getOccasion(curator.curate({})).empty());
    NyOrrinVisionDescriptorsBuilder builder;
    QVERIFY(!access.process(QImage(), builder));
    QCOMPARE(log.containing(line).size(), 0);
    QCOMPARE(threadCount(), threads);

    QImage image(224, 150, QImage::Format_RGB32);
    image.fill(Qt::blue);
    std::atomic<int> described = 0;
    std::vector<std::unique_ptr<QThread>> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back(QThread::create([&] {
            for (int i = 0; i < 10; ++i) {
                NyOrrinVisionDescriptorsBuilder descriptors;
                NySingleton<NyOrrinAccess>::instance().process(image, descriptors);
                described += descriptors.build().descriptors().scenes.size() == 3 ? 1 : 0;
            }
        }));
        workers.back()->start();
    }
    for (const std::unique_ptr<QThread> &worker : workers)
        QVERIFY(worker->wait());
    QCOMPARE(described.load(), 40);
    QCOMPARE(log.containing(line).size(), 1);
    // One thread looks at a photo, the caller's.
    workers.clear();
    QTRY_COMPARE(threadCount(), threads);

    // The folder is gone, so a second loading would end without a model.
    QVERIFY(QDir(modelsFolder()).removeRecursively());
    QVERIFY(access.process(image, builder));
    QCOMPARE(builder.build().descriptors().scenes.size(), std::size_t{3});
    QCOMPARE(log.containing(line).size(), 1);
}

void tst_NyOrrinAccess::curatorsShareTheHome()
{
    NyOrrinAccess access;
    const auto photos = [](double latitude, double longitude, const QDate &from, int days, int step) {
        std::vector<NyOrrinVisionedMediaItem> items;
        for (int day = 0; day < days; ++day) {
            items.emplace_back(NyOrrinMediaItemBuilder()
                                   .setTimestamp(QDateTime(from.addDays(day * step), QTime(12, 0)).toMSecsSinceEpoch())
                                   .setCoordinate(latitude, longitude)
                                   .build(),
                NyOrrinVisionDescriptors());
        }
        return items;
    };
    const auto away = photos(39.57, 2.65, QDate(2024, 5, 1), 7, 1);
    NyOrrinCurator curator = access.getCurator();
    QVERIFY(curator.getOccasion(curator.curate(away)).empty());
    curator.curate(photos(48.14, 11.58, QDate(2024, 1, 1), 20, 5));
    curator = access.getCurator();
    const auto occasions = curator.getOccasion(curator.curate(away));
    QCOMPARE(occasions.size(), std::size_t{1});
    QCOMPARE(occasions[0].getKeyword(), std::string("vacation"));
    QCOMPARE(occasions[0].getSource(), std::string("place"));
}

void tst_NyOrrinAccess::singleton()
{
    QCOMPARE(&NySingleton<NyOrrinAccess>::instance(), &NyOrrinAccess::instance());
}

QTEST_GUILESS_MAIN(tst_NyOrrinAccess)
#include "tst_NyOrrinAccess.moc"

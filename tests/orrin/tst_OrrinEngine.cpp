#include <OrrinEngine.h>
#include <OrrinModel.h>

#include <atomic>
#include <thread>

#include <QTest>

#include "OrrinTestModels.h"

using orrin::Engine;
using orrin::ModelSource;

class tst_OrrinEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withoutModels();
    void invalidView();
    void labels_data();
    void labels();
    void softmaxAndOccasions();
    void manyLabels();
    void clipKind();
    void modelInMemory();
    void brokenModels_data();
    void brokenModels();
    void everyCut();
    void nextModelIsTaken();
    void modelThatFailsAtWork();
    void oneModelAProcess();
    void manyThreads();
    void throwingLogIsHarmless();

private:
    OrrinTestModels m_models;
};

void tst_OrrinEngine::initTestCase()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("there is no ONNX Runtime on this machine");
    const QString problem = m_models.prepare();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void tst_OrrinEngine::withoutModels()
{
    OrrinTestLog log;
    Engine engine({}, {}, log.callback());
    QVERIFY(log.warnings.empty());
    for (int i = 0; i < 3; ++i) {
        const orrin::Descriptors result = engine.describe(OrrinTestPicture(20, 10, {255, 0, 0}).view());
        QVERIFY(result.isValid);
        QVERIFY(result.scenes.empty() && result.occasions.empty() && result.embedding.empty());
        QCOMPARE(result.colorSignature[0], 1.0F);
    }
    QVERIFY(!engine.hasModel());
    QCOMPARE(log.all(), QByteArray("image understanding has no usable model, so photos get the descriptors that need none\n"));
}

void tst_OrrinEngine::invalidView()
{
    OrrinTestLog log;
    Engine engine(
        {ModelSource::inFolder(m_models.add(QStringLiteral("unused"), OrrinTestModels::labelConfig(QStringLiteral("means.onnx"))))}, {},
        log.callback());
    QVERIFY(!engine.describe({}).isValid);
    // Nothing to look at is no reason to load a model.
    QVERIFY(engine.modelName().empty());
}

void tst_OrrinEngine::labels_data()
{
    QTest::addColumn<QJsonObject>("config");
    QTest::addColumn<QList<float>>("expected");
    const QJsonObject plain = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    const QList<float> straight{1.0F, 0.4F, 0.2F};
    QTest::newRow("planes") << plain << straight;
    QJsonObject config = plain;
    QJsonObject input = plain[QStringLiteral("input")].toObject();
    input[QStringLiteral("channels")] = QStringLiteral("BGR");
    config[QStringLiteral("input")] = input;
    QTest::newRow("blue first") << config << QList<float>{0.2F, 0.4F, 1.0F};
    config = plain;
    input = plain[QStringLiteral("input")].toObject();
    input[QStringLiteral("mean")] = QJsonArray{0.5, 0.2, 0.1};
    input[QStringLiteral("deviation")] = QJsonArray{0.5, 0.4, 0.2};
    config[QStringLiteral("input")] = input;
    QTest::newRow("mean and deviation") << config << QList<float>{1.0F, 0.5F, 0.5F};
    QTest::newRow("open sizes") << OrrinTestModels::labelConfig(QStringLiteral("open.onnx")) << straight;
    config = OrrinTestModels::labelConfig(QStringLiteral("bytes.onnx"));
    input = plain[QStringLiteral("input")].toObject();
    input[QStringLiteral("layout")] = QStringLiteral("NHWC");
    config[QStringLiteral("input")] = input;
    QTest::newRow("bytes, channels last") << config << straight;
}

void tst_OrrinEngine::labels()
{
    QFETCH(QJsonObject, config);
    QFETCH(QList<float>, expected);
    OrrinTestLog log;
    Engine engine({ModelSource::inFolder(m_models.add(QString::fromLatin1(QTest::currentDataTag()), config))}, {}, log.callback());
    for (const auto &[width, height] : {std::pair(31, 17), std::pair(8, 8), std::pair(1, 1), std::pair(3, 200)}) {
        const orrin::Descriptors result = engine.describe(OrrinTestPicture(width, height, {255, 102, 51}).view());
        QVERIFY2(log.warnings.empty(), log.all().constData());
        QCOMPARE(result.scenes.size(), std::size_t{3});
        QCOMPARE(result.scenes[0].label, std::string("red"));
        for (std::size_t i = 0; i < 3; ++i) {
            const float probability = result.scenes[i].probability;
            QVERIFY2(std::abs(probability - expected[static_cast<qsizetype>(i)]) < 0.005F, qPrintable(QString::number(probability)));
        }
    }
}

void tst_OrrinEngine::softmaxAndOccasions()
{
    QJsonObject config = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    config[QStringLiteral("activation")] = QStringLiteral("softmax");
    config[QStringLiteral("temperature")] = 0.5;
    config[QStringLiteral("occasions")] = QJsonObject{{QStringLiteral("red"), QStringLiteral("wedding")},
        {QStringLiteral("blue"), QJsonObject{{QStringLiteral("beach"), 0.5}, {QStringLiteral("wedding"), 1}}}};
    OrrinTestLog log;
    Engine engine({ModelSource::inFolder(m_models.add(QStringLiteral("softmax"), config))}, {}, log.callback());
    const orrin::Descriptors result = engine.describe(OrrinTestPicture(9, 9, {255, 0, 0}).view());
    QVERIFY2(log.warnings.empty(), log.all().constData());
    const double red = std::exp(2.0) / (std::exp(2.0) + 2.0);
    const double blue = 1.0 / (std::exp(2.0) + 2.0);
    QVERIFY(std::abs(result.scenes[0].probability - red) < 1e-4);
    QCOMPARE(result.occasions.size(), std::size_t{2});
    QCOMPARE(result.occasions[0].keyword, std::string("beach"));
    QVERIFY(std::abs(result.occasions[0].probability - 0.5 * blue) < 1e-4);
    QVERIFY(std::abs(result.occasions[1].probability - (red + blue)) < 1e-4);
    QVERIFY(result.embedding.empty());
}

void tst_OrrinEngine::manyLabels()
{
    QJsonObject config = OrrinTestModels::labelConfig(QStringLiteral("embedding.onnx"));
    QJsonArray labels;
    QJsonArray embeddings;
    for (int i = 0; i < 100; ++i) {
        labels.append(QStringLiteral("label %1").arg(i));
        embeddings.append(i == 99 ? QJsonArray{1, 0, 0} : QJsonArray{0, 1, 0});
    }
    config[QStringLiteral("labels")] = labels;
    config[QStringLiteral("labelEmbeddings")] = embeddings;
    config[QStringLiteral("outputs")] = QJsonObject{{QStringLiteral("embedding"), QStringLiteral("embedding")}};
    config[QStringLiteral("occasions")] = QJsonObject{{QStringLiteral("label 50"), QStringLiteral("beach")}};
    config.remove(QStringLiteral("activation"));
    OrrinTestLog log;
    Engine engine({ModelSource::inFolder(m_models.add(QStringLiteral("many"), config))}, {}, log.callback());
    const orrin::Descriptors result = engine.describe(OrrinTestPicture(9, 9, {255, 0, 0}).view());
    QVERIFY2(log.warnings.empty(), log.all().constData());
    // The first of equals, and the one that stands out, in the model's order; occasions count all labels.
    QCOMPARE(result.scenes.size(), orrin::Descriptors::MaximumScenes);
    QCOMPARE(result.scenes.front().label, std::string("label 0"));
    QCOMPARE(result.scenes.back().label, std::string("label 99"));
    QVERIFY(result.scenes.back().probability > 0.99F);
    QCOMPARE(result.occasions.size(), std::size_t{1});
}

void tst_OrrinEngine::clipKind()
{
    QJsonObject config = OrrinTestModels::labelConfig(QStringLiteral("embedding.onnx"));
    config.remove(QStringLiteral("activation"));
    config[QStringLiteral("outputs")] = QJsonObject{{QStringLiteral("embedding"), QStringLiteral("embedding")}};
    config[QStringLiteral("labelEmbeddings")] = QJsonArray{QJsonArray{9, 0, 0}, QJsonArray{0, 0.1, 0}, QJsonArray{0, 1, 1}};
    config[QStringLiteral("temperature")] = 0.1;
    OrrinTestLog log;
    Engine engine({ModelSource::inFolder(m_models.add(QStringLiteral("clip"), config))}, {}, log.callback());
    const orrin::Descriptors result = engine.describe(OrrinTestPicture(9, 9, {153, 204, 0}).view());
    QVERIFY2(log.warnings.empty(), log.all().constData());
    QCOMPARE(result.embedding.size(), std::size_t{3});
    QVERIFY(std::abs(result.embedding[0] - 0.6F) < 1e-4F && std::abs(result.embedding[1] - 0.8F) < 1e-4F);
    const std::array<double, 3> powers{std::exp(6.0), std::exp(8.0), std::exp(8.0 / std::sqrt(2.0))};
    for (std::size_t i = 0; i < 3; ++i)
        QVERIFY(std::abs(result.scenes[i].probability - powers[i] / (powers[0] + powers[1] + powers[2])) < 1e-3);
    // Black has no direction: the photo keeps what needs no model, and the model is given up.
    QVERIFY(engine.describe(OrrinTestPicture(9, 9).view()).isValid);
    QCOMPARE(log.warnings.size(), std::size_t{2});
}

void tst_OrrinEngine::modelInMemory()
{
    const std::string json = QJsonDocument(OrrinTestModels::labelConfig(QStringLiteral("means.onnx"))).toJson().toStdString();
    const std::string onnx = m_models.onnx(QStringLiteral("means.onnx")).toStdString();
    OrrinTestLog log;
    Engine engine({ModelSource::inMemory("built-in", {{"model.json", json}, {"means.onnx", onnx}})}, {}, log.callback());
    QCOMPARE(engine.describe(OrrinTestPicture(9, 9, {0, 255, 0}).view()).scenes.size(), std::size_t{3});
    QCOMPARE(engine.modelName(), std::string("built-in"));
    Engine incomplete({ModelSource::inMemory("incomplete", {{"model.json", json}})}, {}, log.callback());
    QVERIFY(!incomplete.hasModel());
    QCOMPARE(log.warnings[0], std::string("incomplete/means.onnx is missing"));
}

void tst_OrrinEngine::brokenModels_data()
{
    QTest::addColumn<QJsonObject>("config");
    QTest::addColumn<QByteArray>("message");
    const auto config = [](const char *file) { return OrrinTestModels::labelConfig(QString::fromLatin1(file)); };
    QTest::newRow("missing") << config("gone.onnx") << QByteArray("gone.onnx is missing");
    QTest::newRow("cut off") << config("cutoff.onnx") << QByteArray("cutoff.onnx is no model that can be loaded: ");
    QTest::newRow("empty") << config("empty.onnx") << QByteArray("empty.onnx is no model that can be loaded: ");
    QTest::newRow("garbage") << config("garbage.onnx") << QByteArray("garbage.onnx is no model that can be loaded: ");
    QTest::newRow("input of another size") << config(
        "large.onnx") << QByteArray("takes input \"pixels\" of shape [1, 3, 16, 16], but \"input\" describes [1, 3, 8, 8]");
    QTest::newRow("input of another layout") << config(
        "bytes.onnx") << QByteArray("takes input \"pixels\" of shape [1, 8, 8, 3], but \"input\" describes [1, 3, 8, 8]");
    QTest::newRow("input of another type") << config("doubles.onnx") << QByteArray("takes neither floats nor bytes as input \"pixels\"");
    QTest::newRow("output of another type") << config("winner.onnx") << QByteArray("gives no floats as output \"scores\"");
    QTest::newRow("two inputs") << config("two-inputs.onnx") << QByteArray("takes 2 inputs (pixels, more) instead of one");
    QTest::newRow("fails at work") << config("misshapen.onnx") << QByteArray("misshapen.onnx fails at work: ");
    QJsonObject changed = config("means.onnx");
    QJsonObject input = changed[QStringLiteral("input")].toObject();
    input[QStringLiteral("name")] = QStringLiteral("image");
    changed[QStringLiteral("input")] = input;
    QTest::newRow("input of another name") << changed << QByteArray("has no input \"image\" as \"input.name\" says, but pixels");
    changed = config("means.onnx");
    changed[QStringLiteral("outputs")] = QJsonObject{{QStringLiteral("scores"), QStringLiteral("logits")}};
    QTest::newRow("output of another name") << changed << QByteArray("has no output \"logits\" as \"outputs.scores\" says, but scores");
    changed = config("means.onnx");
    changed[QStringLiteral("labels")] = QJsonArray{QStringLiteral("a"), QStringLiteral("b")};
    QTest::newRow("fewer labels") << changed << QByteArray("gives output \"scores\" of shape [1, 3], but \"labels\" has 2 entries");
    changed[QStringLiteral("file")] = QStringLiteral("open.onnx");
    QTest::newRow("fewer labels, open size") << changed << QByteArray("gives 3 values as output \"scores\" instead of 2");
    changed = config("embedding.onnx");
    changed.remove(QStringLiteral("activation"));
    changed[QStringLiteral("outputs")] = QJsonObject{{QStringLiteral("embedding"), QStringLiteral("embedding")}};
    changed[QStringLiteral("labelEmbeddings")] = QJsonArray{QJsonArray{1, 0}, QJsonArray{1, 0}, QJsonArray{0, 1}};
    QTest::newRow("shorter table") << changed
                                   << QByteArray("gives output \"embedding\" of shape [1, 3], but \"labelEmbeddings\" has 2 values a row");
}

void tst_OrrinEngine::brokenModels()
{
    QFETCH(QJsonObject, config);
    QFETCH(QByteArray, message);
    const auto folder = m_models.add(QStringLiteral("broken ") + QString::fromLatin1(QTest::currentDataTag()), config);
    OrrinTestLog log;
    Engine engine({ModelSource::inFolder(folder)}, {}, log.callback());
    for (int i = 0; i < 2; ++i) {
        const orrin::Descriptors result = engine.describe(OrrinTestPicture(9, 9, {255, 0, 0}).view());
        QVERIFY(result.isValid);
        QVERIFY(result.scenes.empty());
    }
    QCOMPARE(log.warnings.size(), std::size_t{2});
    const QByteArray line = QByteArray::fromStdString(log.warnings[0]);
    QVERIFY2(line.contains(message), line.constData());
    QVERIFY2(line.startsWith(QByteArray::fromStdString(folder.string())), line.constData());
}

void tst_OrrinEngine::everyCut()
{
    // Wherever a download ended, and whichever byte a disk lost.
    const std::string json = QJsonDocument(OrrinTestModels::labelConfig(QStringLiteral("means.onnx"))).toJson().toStdString();
    const std::string whole = m_models.onnx(QStringLiteral("means.onnx")).toStdString();
    QVERIFY(whole.size() > 100);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        for (const bool isCut : {true, false}) {
            std::string onnx = isCut ? whole.substr(0, length) : whole;
            if (!isCut)
                onnx[length] = static_cast<char>(~onnx[length]);
            OrrinTestLog log;
            Engine engine({ModelSource::inMemory("damaged", {{"model.json", json}, {"means.onnx", onnx}})}, {}, log.callback());
            const orrin::Descriptors result = engine.describe(OrrinTestPicture(9, 9, {255, 0, 0}).view());
            QVERIFY(result.isValid);
            // Damage to a name that nobody reads does no harm.
            QCOMPARE(result.scenes.empty(), !engine.hasModel());
            QCOMPARE(log.warnings.empty(), engine.hasModel());
        }
    }
}

void tst_OrrinEngine::nextModelIsTaken()
{
    OrrinTestLog log;
    Engine engine(
        {ModelSource::inFolder(m_models.add(QStringLiteral("first"), QByteArray("{}"))),
            ModelSource::inFolder(m_models.add(QStringLiteral("second"), OrrinTestModels::labelConfig(QStringLiteral("cutoff.onnx")))),
            ModelSource::inFolder(m_models.add(QStringLiteral("third"), OrrinTestModels::labelConfig(QStringLiteral("means.onnx"))))},
        {}, log.callback());
    QVERIFY(engine.hasModel());
    QCOMPARE(log.warnings.size(), std::size_t{2});
    QVERIFY(engine.modelName().ends_with("/third"));
    QCOMPARE(log.infos.size(), std::size_t{1});
}

void tst_OrrinEngine::modelThatFailsAtWork()
{
    const auto folder = m_models.add(QStringLiteral("logarithm"), OrrinTestModels::labelConfig(QStringLiteral("logarithm.onnx")));
    const auto next = m_models.add(QStringLiteral("next"), OrrinTestModels::labelConfig(QStringLiteral("means.onnx")));
    OrrinTestLog log;
    Engine engine({ModelSource::inFolder(folder), ModelSource::inFolder(next)}, {}, log.callback());
    QCOMPARE(engine.describe(OrrinTestPicture(9, 9, {255, 255, 255}).view()).scenes.size(), std::size_t{3});
    QVERIFY(engine.modelName().ends_with("/logarithm"));
    QCOMPARE(engine.describe(OrrinTestPicture(9, 9, {0, 0, 0}).view()).scenes.size(), std::size_t{3});
    QVERIFY(engine.modelName().ends_with("/next"));
    QCOMPARE(log.all(), QByteArray::fromStdString(folder.string()) + " gives values that are no numbers\n");
}

void tst_OrrinEngine::oneModelAProcess()
{
    OrrinTestLog log;
    const auto source
        = ModelSource::inFolder(m_models.add(QStringLiteral("once"), OrrinTestModels::labelConfig(QStringLiteral("means.onnx"))));
    auto first = orrin::Model::load(source, 1, log.callback());
    const auto second = orrin::Model::load(source, 1, log.callback());
    QVERIFY(first);
    QCOMPARE(first.get(), second.get());
    QVERIFY(orrin::Model::load(source, 2, log.callback()) != first);
}

void tst_OrrinEngine::manyThreads()
{
    OrrinTestLog log;
    Engine engine(
        {ModelSource::inFolder(m_models.add(QStringLiteral("threads"), OrrinTestModels::labelConfig(QStringLiteral("means.onnx"))))}, {},
        log.callback());
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&engine, &wrong, t] {
            const auto level = static_cast<std::uint8_t>(51 * t);
            const OrrinTestPicture picture(30, 20, {level, 0, 255});
            for (int i = 0; i < 200; ++i) {
                const orrin::Descriptors result = engine.describe(picture.view());
                if (result.scenes.size() != 3 || std::abs(result.scenes[0].probability - static_cast<float>(t) / 5.0F) > 0.001F)
                    ++wrong;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(wrong.load(), 0);
    QCOMPARE(log.infos.size(), std::size_t{1});
}

void tst_OrrinEngine::throwingLogIsHarmless()
{
    Engine engine({ModelSource::inFolder("/nowhere")}, {}, [](orrin::LogLevel, const std::string &) { throw std::runtime_error("full"); });
    QVERIFY(engine.describe(OrrinTestPicture(9, 9).view()).isValid);
}

QTEST_GUILESS_MAIN(tst_OrrinEngine)
#include "tst_OrrinEngine.moc"

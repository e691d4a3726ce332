#include <OrrinModelConfig.h>

#include <cmath>

#include <QTest>

#include "OrrinTestModels.h"

using orrin::ModelConfig;

class tst_OrrinModelConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void allFields();
    void embeddingFile();
    void wrongFields_data();
    void wrongFields();
    void noJson();
    void bracketsInTexts();
    void missingFile();
    void unknownFieldsAreLeftOut();
    void modelsOfAFolder();

private:
    static QJsonObject changed(const char *object, const char *field, const QJsonValue &value);
    static std::optional<ModelConfig> read(const QByteArray &json, OrrinTestLog &log);
};

QJsonObject tst_OrrinModelConfig::changed(const char *object, const char *field, const QJsonValue &value)
{
    QJsonObject config = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    const QString name = QString::fromLatin1(field);
    if (!object) {
        config[name] = value;
        return config;
    }
    QJsonObject inner = config[QString::fromLatin1(object)].toObject();
    inner[name] = value;
    config[QString::fromLatin1(object)] = inner;
    return config;
}

std::optional<ModelConfig> tst_OrrinModelConfig::read(const QByteArray &json, OrrinTestLog &log)
{
    const std::string text = json.toStdString();
    return ModelConfig::read(orrin::ModelSource::inMemory("memory", {{"model.json", text}}), log.callback());
}

void tst_OrrinModelConfig::defaults()
{
    OrrinTestLog log;
    QJsonObject json = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    json.remove(QStringLiteral("activation"));
    const auto config = read(QJsonDocument(json).toJson(), log);
    QVERIFY2(config.has_value(), log.all().constData());
    QCOMPARE(config->file, std::string("means.onnx"));
    QCOMPARE(config->inputWidthPx, 8);
    QCOMPARE(config->layout, ModelConfig::Layout::Nchw);
    QCOMPARE(config->channelOrder, ModelConfig::ChannelOrder::Rgb);
    QCOMPARE(config->fit, ModelConfig::Fit::Crop);
    QCOMPARE(config->activation, ModelConfig::Activation::Softmax);
    QCOMPARE(config->temperature, 1.0F);
    QCOMPARE(config->deviation[2], 1.0F);
    QCOMPARE(config->occasionsOfLabel.size(), std::size_t{3});
    QVERIFY(!config->isClipKind());
    QVERIFY(log.warnings.empty());
}

void tst_OrrinModelConfig::allFields()
{
    OrrinTestLog log;
    const auto config = read(R"({"name": "Test", "license": "CC0", "file": "a/m.onnx",
        "input": {"name": "x", "width": 224, "height": 192, "layout": "NHWC", "channels": "BGR", "fit": "pad",
                  "mean": [0.1, 0.2, 0.3], "deviation": [0.4, 0.5, 0.6]},
        "outputs": {"embedding": "e"}, "labels": ["sea", "snow"], "labelEmbeddings": [[3, 4], [0, -2]],
        "temperature": 0.05, "occasions": {"sea": {"beach": 1, "cruise": 0.25}, "snow": "snow"}})",
        log);
    QVERIFY2(config.has_value(), log.all().constData());
    QVERIFY(log.warnings.empty());
    QCOMPARE(config->inputHeightPx, 192);
    QCOMPARE(config->layout, ModelConfig::Layout::Nhwc);
    QCOMPARE(config->channelOrder, ModelConfig::ChannelOrder::Bgr);
    QCOMPARE(config->fit, ModelConfig::Fit::Pad);
    QCOMPARE(config->mean[1], 0.2F);
    QCOMPARE(config->deviation[2], 0.6F);
    QVERIFY(config->isClipKind());
    QCOMPARE(config->labelEmbeddings[0][1], 0.8F);
    QCOMPARE(config->labelEmbeddings[1][1], -1.0F);
    QCOMPARE(config->temperature, 0.05F);
    const std::vector<std::pair<std::string, float>> ofSea{{"beach", 1.0F}, {"cruise", 0.25F}};
    QVERIFY(config->occasionsOfLabel[0] == ofSea);
    QCOMPARE(config->occasionsOfLabel[1][0].first, std::string("snow"));
}

void tst_OrrinModelConfig::embeddingFile()
{
    const std::string json = R"({"file": "m.onnx", "input": {"name": "x", "width": 1, "height": 1}, "outputs": {"embedding": "e"},
        "labels": ["a", "b"], "labelEmbeddings": "table.f32"})";
    // 0, 2 and -0.5, 0 as little-endian numbers of four bytes.
    const std::string table("\0\0\0\0\0\0\0\x40\0\0\0\xbf\0\0\0\0", 16);
    OrrinTestLog log;
    auto config = ModelConfig::read(orrin::ModelSource::inMemory("memory", {{"model.json", json}, {"table.f32", table}}), log.callback());
    QVERIFY2(config.has_value(), log.all().constData());
    QCOMPARE(config->labelEmbeddings[0][1], 1.0F);
    QCOMPARE(config->labelEmbeddings[1][0], -1.0F);
    QCOMPARE(config->temperature, 0.01F);

    config = ModelConfig::read(
        orrin::ModelSource::inMemory("memory", {{"model.json", json}, {"table.f32", std::string_view(table).substr(0, 12)}}),
        log.callback());
    QVERIFY(!config);
    QCOMPARE(log.all(),
        QByteArray("memory/model.json: \"labelEmbeddings\" names table.f32 of 12 bytes, which is no whole number of 4-byte "
                   "values for each of 2 labels\n"));
}

void tst_OrrinModelConfig::wrongFields_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QJsonObject &json, const char *message) {
        QTest::newRow(name) << QJsonDocument(json).toJson() << QByteArray("memory/model.json: ") + message + '\n';
    };
    QJsonObject config = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    config.remove(QStringLiteral("file"));
    row("no file", config, "\"file\" is missing");
    row("file is a number", changed(nullptr, "file", 3), "\"file\" must be a text, but is 3");
    row("file leads out", changed(nullptr, "file", QStringLiteral("../../etc/passwd")),
        "\"file\" must name a file in the model's own folder, but is \"../../etc/passwd\"");
    row("absolute file", changed(nullptr, "file", QStringLiteral("/etc/passwd")),
        "\"file\" must name a file in the model's own folder, but is \"/etc/passwd\"");
    row("input is a list", changed(nullptr, "input", QJsonArray{1}), "\"input\" must be an object, but is [1]");
    row("no input name", changed("input", "name", QJsonValue()), "\"input.name\" must be a text, but is null");
    row("width is a text", changed("input", "width", QStringLiteral("224")),
        "\"input.width\" must be a whole number from 1 to 2048, but is \"224\"");
    row("width is 0", changed("input", "width", 0), "\"input.width\" must be a whole number from 1 to 2048, but is 0");
    row("width is negative", changed("input", "width", -1), "\"input.width\" must be a whole number from 1 to 2048, but is -1");
    row("height is enormous", changed("input", "height", 2049), "\"input.height\" must be a whole number from 1 to 2048, but is 2049");
    row("height is a fraction", changed("input", "height", 1.5), "\"input.height\" must be a whole number from 1 to 2048, but is 1.5");
    row("layout", changed("input", "layout", QStringLiteral("CHW")), "\"input.layout\" must be one of NCHW, NHWC, but is \"CHW\"");
    row("channels", changed("input", "channels", 3), "\"input.channels\" must be one of RGB, BGR, but is 3");
    row("fit", changed("input", "fit", true), "\"input.fit\" must be one of crop, stretch, pad, but is true");
    row("mean of two", changed("input", "mean", QJsonArray{1, 2}), "\"input.mean\" must be three numbers, but is [1,2]");
    row("mean of texts", changed("input", "mean", QJsonArray{1, 2, QStringLiteral("x")}), "\"input.mean\" must be a number, but is \"x\"");
    row("deviation of zero", changed("input", "deviation", QJsonArray{1, 0, 1}), "\"input.deviation\" must be above 0, but is [1,0,1]");
    row("no outputs", changed(nullptr, "outputs", QJsonObject()), "\"outputs\" must name \"scores\" or \"embedding\"");
    row("embedding only", changed(nullptr, "outputs", QJsonObject{{QStringLiteral("embedding"), QStringLiteral("e")}}),
        "\"outputs.scores\" is missing, and without \"labelEmbeddings\" it is needed");
    row("no labels", changed(nullptr, "labels", QJsonArray()), "\"labels\" must be a list of 1 to 100000 texts, but is []");
    row("label is a number", changed(nullptr, "labels", QJsonArray{QStringLiteral("a"), 1}),
        "\"labels\" must hold texts only, but holds 1");
    row("label twice", changed(nullptr, "labels", QJsonArray{QStringLiteral("a"), QStringLiteral("a")}),
        "\"labels\" holds \"a\" more than once");
    row("activation", changed(nullptr, "activation", QStringLiteral("relu")),
        "\"activation\" must be one of none, softmax, sigmoid, but is \"relu\"");
    row("temperature of zero", changed(nullptr, "temperature", 0), "\"temperature\" must be at least 0.0001, but is 0");
    row("unknown scene", changed("occasions", "purple", QStringLiteral("beach")), "\"occasions.purple\" is none of the labels");
    row("weight above 1", changed("occasions", "red", QJsonObject{{QStringLiteral("beach"), 2}}),
        "\"occasions.red.beach\" must be above 0 and at most 1, but is 2");
    row("weight is a text", changed("occasions", "red", QJsonObject{{QStringLiteral("beach"), QStringLiteral("1")}}),
        "\"occasions.red.beach\" must be a number, but is \"1\"");
    row("occasion is a number", changed("occasions", "red", 1),
        "\"occasions.red\" must be an occasion or an object of occasions and weights, but is 1");
    row("table without an output", changed(nullptr, "labelEmbeddings", QJsonArray()),
        "\"outputs.embedding\" is missing, and \"labelEmbeddings\" needs it");
    config = OrrinTestModels::labelConfig(QStringLiteral("means.onnx"));
    config[QStringLiteral("outputs")] = QJsonObject{{QStringLiteral("embedding"), QStringLiteral("e")}};
    config.remove(QStringLiteral("activation"));
    config[QStringLiteral("labelEmbeddings")] = QJsonArray{QJsonArray{1, 0}, QJsonArray{0, 1}};
    row("table too short", config, "\"labelEmbeddings\" must be a file name or a row for each of the 3 labels, but is [[1,0],[0,1]]");
    config[QStringLiteral("labelEmbeddings")] = QJsonArray{QJsonArray{1, 0}, QJsonArray{0, 1}, QJsonArray{1}};
    row("rows of two lengths", config, "\"labelEmbeddings\" must have rows of one length, but has [1]");
    config[QStringLiteral("labelEmbeddings")] = QJsonArray{QJsonArray{1, 0}, QJsonArray{0, 0}, QJsonArray{0, 1}};
    row("row of zeros", config, "\"labelEmbeddings\" has a row without a direction for the label \"green\"");
    config[QStringLiteral("labelEmbeddings")] = QStringLiteral("gone.f32");
    row("table's file is missing", config, "\"labelEmbeddings\" names gone.f32, which is missing");
    config[QStringLiteral("activation")] = QStringLiteral("sigmoid");
    config[QStringLiteral("labelEmbeddings")] = QJsonArray{QJsonArray{1}, QJsonArray{1}, QJsonArray{1}};
    row("table with another activation", config, "\"activation\" must be softmax beside \"labelEmbeddings\"");
    QTest::newRow("a list") << QByteArray("[]") << QByteArray("memory/model.json: holds no object\n");
}

void tst_OrrinModelConfig::wrongFields()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, message);
    OrrinTestLog log;
    QVERIFY(!read(json, log));
    QCOMPARE(log.all(), message);
}

void tst_OrrinModelConfig::noJson()
{
    OrrinTestLog log;
    QVERIFY(!read("{\n  \"file\": ,\n}", log));
    QVERIFY(!read("", log));
    // Deep nesting must not eat the stack.
    QVERIFY(!read(QByteArray(200000, '['), log));
    QVERIFY(!read("{\"file\": " + QByteArray(200000, '[') + QByteArray(200000, ']') + '}', log));
    QCOMPARE(log.warnings.size(), std::size_t{4});
    QCOMPARE(log.warnings[3], std::string("memory/model.json is nested too deeply"));
    QCOMPARE(log.warnings[0], std::string("memory/model.json is no JSON, line 2, column 11"));
    QCOMPARE(log.warnings[1], std::string("memory/model.json is no JSON, line 1, column 1"));
}

void tst_OrrinModelConfig::bracketsInTexts()
{
    OrrinTestLog log;
    QJsonObject json = changed(nullptr, "description", QString(100, u'[') + QStringLiteral("\\\"") + QString(100, u'{'));
    json[QStringLiteral("labels")] = QJsonArray{QString(70, u'['), QStringLiteral("\\"), QStringLiteral("c")};
    json.remove(QStringLiteral("occasions"));
    QVERIFY2(read(QJsonDocument(json).toJson(), log), log.all().constData());
}

void tst_OrrinModelConfig::missingFile()
{
    OrrinTestLog log;
    QVERIFY(!ModelConfig::read(orrin::ModelSource::inFolder("/nowhere/at all"), log.callback()));
    QCOMPARE(log.all(), QByteArray("/nowhere/at all/model.json is missing\n"));
}

void tst_OrrinModelConfig::unknownFieldsAreLeftOut()
{
    OrrinTestLog log;
    QVERIFY(read(QJsonDocument(changed("input", "heigth", 3)).toJson(), log));
    QCOMPARE(log.all(), QByteArray("memory/model.json: \"input.heigth\" is no known field\n"));
}

void tst_OrrinModelConfig::modelsOfAFolder()
{
    OrrinTestModels models;
    QVERIFY(orrin::ModelSource::allIn(models.folder()).empty());
    models.add(QStringLiteral("b"), QByteArray("{}"));
    models.add(QStringLiteral("a"), QByteArray("{}"));
    std::filesystem::create_directories(models.folder() / "no model");
    auto sources = orrin::ModelSource::allIn(models.folder());
    QCOMPARE(sources.size(), std::size_t{2});
    QCOMPARE(sources[0].folder.filename().string(), std::string("a"));
    models.add(QStringLiteral("."), QByteArray("{}"));
    sources = orrin::ModelSource::allIn(models.folder());
    QCOMPARE(sources.size(), std::size_t{3});
    QCOMPARE(sources[0].folder, models.folder());
}

QTEST_GUILESS_MAIN(tst_OrrinModelConfig)
#include "tst_OrrinModelConfig.moc"

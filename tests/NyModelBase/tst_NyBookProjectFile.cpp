#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>

#include "NyBookProjectFile.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

NyBookProject sampleProject()
{
    NyBookProject project;
    project.title = u"Toskana \"Süd\" & Nord %1 \U0001F60A"_s;
    project.subtitle = u"12. – 26. März 2024\nzweite Zeile"_s;
    project.style = NyDesignElementID(u"velmora.style.linen"_s);
    project.occasions = {u"vacation"_s, u"beach"_s};
    project.creationDateEpoch = 1'711'929'600;
    project.pageSizeMm = QSizeF(280, 210.5);
    NyPlacedFoto foto;
    foto.url = QUrl::fromLocalFile(u"/tmp/ä ö%20#1?\n:\"&.jpg"_s);
    foto.rectMm = QRectF(0.1, 12.3456789, 100.0 / 3.0, 1e-3);
    foto.crop = QRectF(0.1, 0.2, 0.9, 0.8);
    foto.rotationDegrees = 270;
    foto.sizePx = QSize(4032, 3024);
    NyPlacedFoto bare;
    bare.url = QUrl(u"photokitfs:/abc"_s);
    bare.rectMm = QRectF(1, 2, 3, 4);
    NyBookText text;
    text.role = NyBookText::Role::DayHeading;
    text.text = u"Samstag"_s;
    text.rectMm = QRectF(12, 12, 200, 8);
    text.fontSizePt = 10.5;
    text.alignment = Qt::AlignRight;
    NyBookText title;
    title.role = NyBookText::Role::Title;
    title.rectMm = QRectF(1, 1, 1, 1);
    title.alignment = Qt::AlignLeft;
    project.cover = NyBookPage{{foto}, {title}};
    project.pages = {NyBookPage{{foto, bare}, {text}}, NyBookPage()};
    return project;
}

/** The sample as JSON with the value at @p path (keys and indexes) replaced, or removed if undefined. */
QByteArray sampleWith(const QVariantList &path, const QJsonValue &value)
{
    const std::function<QJsonValue(const QJsonValue &, qsizetype)> replaced = [&](const QJsonValue &node, qsizetype depth) -> QJsonValue {
        if (depth == path.size())
            return value;
        if (path.at(depth).typeId() == QMetaType::Int) {
            QJsonArray array = node.toArray();
            array.replace(path.at(depth).toInt(), replaced(array.at(path.at(depth).toInt()), depth + 1));
            return array;
        }
        QJsonObject object = node.toObject();
        const QString key = path.at(depth).toString();
        const QJsonValue changed = replaced(object.value(key), depth + 1);
        if (changed.isUndefined())
            object.remove(key);
        else
            object.insert(key, changed);
        return object;
    };
    const QJsonDocument document = QJsonDocument::fromJson(NyBookProjectFile::toJson(sampleProject()));
    return QJsonDocument(replaced(document.object(), 0).toObject()).toJson();
}

}

class tst_NyBookProjectFile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void roundTrip();
    void roundTripOfAnEmptyBook();
    void isTheSameInEveryLocale();
    void unknownKeysArePassedOver();
    void optionalFieldsHaveDefaults();
    void newerVersionIsRefused();
    void brokenJsonNamesThePlace_data();
    void brokenJsonNamesThePlace();
    void brokenFieldsNameThePlace_data();
    void brokenFieldsNameThePlace();
    void everyTruncationIsRefused();
    void damagedBytesNeverDoHarm();
    void loadOfMissingFileAndFolder();
    void loadRoundTrip();
    void hugeBookIsWrittenDensely();
};

void tst_NyBookProjectFile::roundTrip()
{
    const NyBookProject project = sampleProject();
    const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(NyBookProjectFile::toJson(project), u"x"_s);
    QCOMPARE(result.error, QString());
    QVERIFY(result.project);
    QVERIFY(*result.project == project);
    QCOMPARE(result.project->cover.photos.first().url.toLocalFile(), project.cover.photos.first().url.toLocalFile());
    NyBookProject other = project;
    other.pages[0].photos[0].rectMm.translate(0.001, 0);
    QVERIFY(!(*result.project == other));
}

void tst_NyBookProjectFile::roundTripOfAnEmptyBook()
{
    const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(NyBookProjectFile::toJson(NyBookProject()), u"x"_s);
    QVERIFY2(result.project, qPrintable(result.error));
    QVERIFY(*result.project == NyBookProject());
}

void tst_NyBookProjectFile::isTheSameInEveryLocale()
{
    const QByteArray inC = NyBookProjectFile::toJson(sampleProject());
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QByteArray inGerman = NyBookProjectFile::toJson(sampleProject());
    const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(inC, u"x"_s);
    QLocale::setDefault(before);
    QCOMPARE(inGerman, inC);
    QVERIFY(inC.contains("12.3456789"));
    QVERIFY(result.project);
    QVERIFY(*result.project == sampleProject());
}

void tst_NyBookProjectFile::unknownKeysArePassedOver()
{
    const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(sampleWith({u"somethingNew"_s}, QJsonArray{1, 2}), u"x"_s);
    QVERIFY2(result.project, qPrintable(result.error));
    QVERIFY(*result.project == sampleProject());
}

void tst_NyBookProjectFile::optionalFieldsHaveDefaults()
{
    QByteArray json = sampleWith({u"pages"_s, 0, u"photos"_s, 0, u"crop"_s}, QJsonValue(QJsonValue::Undefined));
    NyBookProjectFile::Result result = NyBookProjectFile::fromJson(json, u"x"_s);
    QVERIFY2(result.project, qPrintable(result.error));
    QCOMPARE(result.project->pages[0].photos[0].crop, QRectF(0, 0, 1, 1));
    json = sampleWith({u"pages"_s, 0, u"photos"_s, 0, u"sizePx"_s}, QJsonValue(QJsonValue::Undefined));
    result = NyBookProjectFile::fromJson(json, u"x"_s);
    QVERIFY2(result.project, qPrintable(result.error));
    QVERIFY(result.project->pages[0].photos[0].sizePx.isEmpty());
}

void tst_NyBookProjectFile::newerVersionIsRefused()
{
    const NyBookProjectFile::Result result
        = NyBookProjectFile::fromJson(sampleWith({u"formatVersion"_s}, NyBookProjectFile::FormatVersion + 1), u"/books/a.nqp"_s);
    QVERIFY(!result.project);
    QVERIFY2(result.error.contains(u"/books/a.nqp"_s), qPrintable(result.error));
    QVERIFY2(result.error.contains(u"neueren Programmversion"_s), qPrintable(result.error));
    QVERIFY2(result.error.contains(u"Format %1"_s.arg(NyBookProjectFile::FormatVersion + 1)), qPrintable(result.error));
}

void tst_NyBookProjectFile::brokenJsonNamesThePlace_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("place");
    QTest::newRow("empty") << QByteArray() << u"Zeile 1, Spalte 1:"_s;
    QTest::newRow("nul bytes") << QByteArray(100, '\0') << u"Zeile 1,"_s;
    QTest::newRow("second line") << QByteArray("{\n  \"a\" 1, \"b\": 2\n}") << u"Zeile 2,"_s;
    QTest::newRow("array") << QByteArray("[]") << u"kein Buchprojekt"_s;
    QTest::newRow("other object") << QByteArray("{}") << u"kein Buchprojekt"_s;
}

void tst_NyBookProjectFile::brokenJsonNamesThePlace()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, place);
    const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(json, u"/books/%1 a.nqp"_s);
    QVERIFY(!result.project);
    QVERIFY2(result.error.contains(place), qPrintable(result.error));
    QVERIFY2(result.error.contains(u"/books/%1 a.nqp"_s), qPrintable(result.error));
}

void tst_NyBookProjectFile::brokenFieldsNameThePlace_data()
{
    QTest::addColumn<QVariantList>("path");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("place");
    const QJsonValue missing(QJsonValue::Undefined);
    const QVariantList photo{u"pages"_s, 0, u"photos"_s, 1};
    const QVariantList text{u"pages"_s, 0, u"texts"_s, 0};
    const auto row = [](const char *name, const QVariantList &path, const QJsonValue &value, const QString &place) {
        QTest::newRow(name) << path << value << place;
    };
    row("format", {u"format"_s}, u"other"_s, u"\"format\""_s);
    row("version missing", {u"formatVersion"_s}, missing, u"\"formatVersion\""_s);
    row("version 0", {u"formatVersion"_s}, 0, u"\"formatVersion\""_s);
    row("version 1.5", {u"formatVersion"_s}, 1.5, u"\"formatVersion\""_s);
    row("version huge", {u"formatVersion"_s}, 1e300, u"\"formatVersion\""_s);
    row("title is a number", {u"title"_s}, 3, u"\"title\""_s);
    row("title too long", {u"title"_s}, QString(20001, u'x'), u"\"title\""_s);
    row("style missing", {u"style"_s}, missing, u"\"style\""_s);
    row("page size empty", {u"pageSizeMm"_s}, QJsonArray(), u"\"pageSizeMm\""_s);
    row("page size 0", {u"pageSizeMm"_s, 1}, 0, u"\"pageSizeMm[1]\""_s);
    row("page size text", {u"pageSizeMm"_s, 0}, u"280"_s, u"\"pageSizeMm[0]\""_s);
    row("pages missing", {u"pages"_s}, missing, u"\"pages\""_s);
    row("pages an object", {u"pages"_s}, QJsonObject(), u"\"pages\""_s);
    row("page a number", {u"pages"_s, 1}, 7, u"\"pages[1]\""_s);
    row("cover missing", {u"cover"_s}, missing, u"\"cover\""_s);
    row("url missing", photo + QVariantList{u"url"_s}, missing, u"\"pages[0].photos[1].url\""_s);
    row("url relative", photo + QVariantList{u"url"_s}, u"a.jpg"_s, u"\"pages[0].photos[1].url\""_s);
    row("rect short", photo + QVariantList{u"rectMm"_s}, QJsonArray{1, 2, 3}, u"\"pages[0].photos[1].rectMm\""_s);
    row("rect empty", photo + QVariantList{u"rectMm"_s}, QJsonArray{1, 2, 0, 3}, u"\"pages[0].photos[1].rectMm\""_s);
    row("rect huge", photo + QVariantList{u"rectMm"_s, 0}, 1e18, u"\"pages[0].photos[1].rectMm[0]\""_s);
    row("crop beyond", photo + QVariantList{u"crop"_s}, QJsonArray{0.5, 0, 0.6, 1}, u"\"pages[0].photos[1].crop\""_s);
    row("rotation 45", photo + QVariantList{u"rotation"_s}, 45, u"\"pages[0].photos[1].rotation\""_s);
    row("rotation text", photo + QVariantList{u"rotation"_s}, u"90"_s, u"\"pages[0].photos[1].rotation\""_s);
    row("size 0", photo + QVariantList{u"sizePx"_s}, QJsonArray{0, 5}, u"\"pages[0].photos[1].sizePx[0]\""_s);
    row("role unknown", text + QVariantList{u"role"_s}, u"poem"_s, u"\"pages[0].texts[0].role\""_s);
    row("alignment unknown", text + QVariantList{u"alignment"_s}, u"up"_s, u"\"pages[0].texts[0].alignment\""_s);
    row("font size 0", text + QVariantList{u"fontSizePt"_s}, 0, u"\"pages[0].texts[0].fontSizePt\""_s);
}

void tst_NyBookProjectFile::brokenFieldsNameThePlace()
{
    QFETCH(QVariantList, path);
    QFETCH(QJsonValue, value);
    QFETCH(QString, place);
    const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(sampleWith(path, value), u"/b/a.nqp"_s);
    QVERIFY(!result.project);
    QVERIFY2(result.error.contains(place), qPrintable(result.error));
    QVERIFY2(result.error.contains(u"/b/a.nqp"_s), qPrintable(result.error));
}

void tst_NyBookProjectFile::everyTruncationIsRefused()
{
    const QByteArray json = NyBookProjectFile::toJson(sampleProject()).trimmed();
    for (qsizetype length = 0; length < json.size(); length += 7) {
        const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(json.first(length), u"x"_s);
        QVERIFY2(!result.project, qPrintable(QString::number(length)));
        QVERIFY(!result.error.isEmpty());
    }
}

void tst_NyBookProjectFile::damagedBytesNeverDoHarm()
{
    QRandomGenerator random(1);
    const QByteArray json = NyBookProjectFile::toJson(sampleProject());
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray damaged = json;
        for (int i = 0; i <= round % 4; ++i)
            damaged[random.bounded(damaged.size())] = char(random.bounded(256));
        const NyBookProjectFile::Result result = NyBookProjectFile::fromJson(damaged, u"x"_s);
        // Exactly one of both, and what was read can be written and read again.
        QVERIFY(result.project.has_value() == result.error.isEmpty());
        if (!result.project) {
            ++refused;
            continue;
        }
        const NyBookProjectFile::Result again = NyBookProjectFile::fromJson(NyBookProjectFile::toJson(*result.project), u"x"_s);
        QVERIFY2(again.project, qPrintable(again.error));
        QVERIFY(*again.project == *result.project);
    }
    QVERIFY(refused > 1000);
}

void tst_NyBookProjectFile::loadOfMissingFileAndFolder()
{
    const QTemporaryDir dir;
    const QString missing = dir.filePath(u"gone.nqp"_s);
    QVERIFY(NyBookProjectFile::load(QFileInfo(missing)).error.contains(missing));
    QVERIFY(!NyBookProjectFile::load(QFileInfo(missing)).project);
    QVERIFY(NyBookProjectFile::load(QFileInfo(dir.path())).error.contains(dir.path()));
}

void tst_NyBookProjectFile::loadRoundTrip()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath(u"ä%1.nqp"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(NyBookProjectFile::toJson(sampleProject())) > 0);
    file.close();
    const NyBookProjectFile::Result result = NyBookProjectFile::load(QFileInfo(file));
    QVERIFY2(result.project, qPrintable(result.error));
    QVERIFY(*result.project == sampleProject());
}

void tst_NyBookProjectFile::hugeBookIsWrittenDensely()
{
    NyPlacedFoto foto;
    foto.url = QUrl(u"file:///a"_s);
    foto.rectMm = QRectF(1, 2, 3, 4);
    foto.sizePx = QSize(3000, 2000);
    NyBookProject project = sampleProject();
    // About 110 bytes each, and more than three times as many with the indentation.
    project.pages = QList<NyBookPage>(200, NyBookPage{QList<NyPlacedFoto>(1000, foto), {}});
    const QByteArray json = NyBookProjectFile::toJson(project);
    QVERIFY(json.size() <= NyBookProjectFile::MaximumBytes);
    QVERIFY(!json.contains('\n'));
    project.pages.resize(2);
    QVERIFY(NyBookProjectFile::toJson(project).contains('\n'));
}

QTEST_GUILESS_MAIN(tst_NyBookProjectFile)
#include "tst_NyBookProjectFile.moc"

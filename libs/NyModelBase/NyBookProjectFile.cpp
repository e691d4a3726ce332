#include "NyBookProjectFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <cmath>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr auto FORMAT_NAME = "velmora-book"_L1;
/** Sides of a page beyond this are no book but a broken file. */
constexpr double MAXIMUM_PAGE_MM = 2000;
constexpr int MAXIMUM_PAGES = 10000;
/** Setting a longer text would block whoever shows the book; the longest path, percent-encoded, still fits. */
constexpr qsizetype MAXIMUM_TEXT = 20000;

struct RoleName
{
    NyBookText::Role role;
    QLatin1StringView name;
};
constexpr std::array ROLE_NAMES{
    RoleName{NyBookText::Role::Title, "title"_L1},
    RoleName{NyBookText::Role::Subtitle, "subtitle"_L1},
    RoleName{NyBookText::Role::DayHeading, "dayHeading"_L1},
    RoleName{NyBookText::Role::Caption, "caption"_L1},
};

struct AlignmentName
{
    Qt::AlignmentFlag alignment;
    QLatin1StringView name;
};
constexpr std::array ALIGNMENT_NAMES{
    AlignmentName{Qt::AlignLeft, "left"_L1},
    AlignmentName{Qt::AlignHCenter, "center"_L1},
    AlignmentName{Qt::AlignRight, "right"_L1},
};

QJsonArray rectToJson(const QRectF &rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

QJsonObject pageToJson(const NyBookPage &page)
{
    QJsonArray photos;
    for (const NyPlacedFoto &foto : page.photos) {
        QJsonObject object{
            {u"url"_s, foto.url.toString(QUrl::FullyEncoded)},
            {u"rectMm"_s, rectToJson(foto.rectMm)},
            {u"crop"_s, rectToJson(foto.crop)},
            {u"rotation"_s, foto.rotationDegrees},
        };
        if (!foto.sizePx.isEmpty())
            object.insert(u"sizePx"_s, QJsonArray{foto.sizePx.width(), foto.sizePx.height()});
        photos.append(object);
    }
    QJsonArray texts;
    for (const NyBookText &text : page.texts) {
        QString role;
        for (const RoleName &entry : ROLE_NAMES) {
            if (entry.role == text.role)
                role = entry.name;
        }
        QString alignment = u"center"_s;
        for (const AlignmentName &entry : ALIGNMENT_NAMES) {
            if (entry.alignment == text.alignment)
                alignment = entry.name;
        }
        texts.append(QJsonObject{
            {u"role"_s, role},
            {u"text"_s, text.text},
            {u"rectMm"_s, rectToJson(text.rectMm)},
            {u"fontSizePt"_s, text.fontSizePt},
            {u"alignment"_s, alignment},
        });
    }
    return {{u"photos"_s, photos}, {u"texts"_s, texts}};
}

/** Carries the place of the first fault out of nested reading; never leaves this file. */
struct ReadFault
{
    QString place;
    QString what;
};

/** Reads fields and remembers the path to each for the messages. */
class Reader
{
    Q_DECLARE_TR_FUNCTIONS(NyBookProjectFile)
public:
    Reader(const QJsonValue &value, const QString &place)
        : m_value(value)
        , m_place(place)
    {
    }

    [[noreturn]] void fail(const QString &what) const { throw ReadFault{m_place, what}; }

    Reader member(QLatin1StringView key) const
    {
        if (!m_value.isObject())
            fail(tr("hier wird ein Objekt erwartet"));
        const QString place = m_place.isEmpty() ? QString(key) : m_place + u'.' + key;
        return {m_value.toObject().value(key), place};
    }

    bool isMissing() const { return m_value.isUndefined(); }

    QList<Reader> elements(qsizetype maximum) const
    {
        if (!m_value.isArray())
            fail(isMissing() ? tr("die Angabe fehlt") : tr("hier wird eine Liste erwartet"));
        const QJsonArray array = m_value.toArray();
        if (array.size() > maximum)
            fail(tr("die Liste ist länger als %1 Einträge").arg(maximum));
        QList<Reader> readers;
        readers.reserve(array.size());
        for (qsizetype i = 0; i < array.size(); ++i)
            readers.append({array.at(i), u"%1[%2]"_s.arg(m_place).arg(i)});
        return readers;
    }

    QString text() const
    {
        if (!m_value.isString())
            fail(isMissing() ? tr("die Angabe fehlt") : tr("hier wird ein Text erwartet"));
        const QString text = m_value.toString();
        if (text.size() > MAXIMUM_TEXT)
            fail(tr("der Text ist länger als %1 Zeichen").arg(MAXIMUM_TEXT));
        return text;
    }

    double number(double minimum, double maximum) const
    {
        if (!m_value.isDouble())
            fail(isMissing() ? tr("die Angabe fehlt") : tr("hier wird eine Zahl erwartet"));
        const double number = m_value.toDouble();
        if (!std::isfinite(number) || number < minimum || number > maximum)
            fail(tr("die Zahl %1 liegt nicht zwischen %2 und %3").arg(number).arg(minimum).arg(maximum));
        return number;
    }

    qint64 integer(qint64 minimum, qint64 maximum) const
    {
        const double value = number(double(minimum), double(maximum));
        if (value != std::floor(value))
            fail(tr("hier wird eine ganze Zahl erwartet"));
        return qint64(value);
    }

    /** Four numbers x, y, width, height; width and height greater than 0. */
    QRectF rect(double minimum, double maximum) const
    {
        const QList<Reader> numbers = elements(4);
        if (numbers.size() != 4)
            fail(tr("hier werden vier Zahlen erwartet"));
        const QRectF rect(numbers[0].number(minimum, maximum), numbers[1].number(minimum, maximum), numbers[2].number(0, maximum),
            numbers[3].number(0, maximum));
        if (rect.width() <= 0 || rect.height() <= 0)
            fail(tr("das Rechteck ist leer"));
        return rect;
    }

private:
    QJsonValue m_value;
    QString m_place;
};

NyPlacedFoto readPhoto(const Reader &reader)
{
    NyPlacedFoto foto;
    const Reader url = reader.member("url"_L1);
    foto.url = QUrl(url.text(), QUrl::StrictMode);
    if (!foto.url.isValid() || foto.url.isRelative())
        url.fail(Reader::tr("das ist keine vollständige Adresse eines Fotos"));
    foto.rectMm = reader.member("rectMm"_L1).rect(-MAXIMUM_PAGE_MM, MAXIMUM_PAGE_MM);
    if (const Reader crop = reader.member("crop"_L1); !crop.isMissing()) {
        foto.crop = crop.rect(0, 1);
        constexpr double roundingSlack = 1e-9;
        if (foto.crop.right() > 1 + roundingSlack || foto.crop.bottom() > 1 + roundingSlack)
            crop.fail(Reader::tr("der Ausschnitt reicht über das Foto hinaus"));
    }
    if (const Reader rotation = reader.member("rotation"_L1); !rotation.isMissing()) {
        foto.rotationDegrees = int(rotation.integer(0, 270));
        if (foto.rotationDegrees % 90 != 0)
            rotation.fail(Reader::tr("erlaubt sind nur 0, 90, 180 und 270 Grad"));
    }
    if (const Reader size = reader.member("sizePx"_L1); !size.isMissing()) {
        const QList<Reader> numbers = size.elements(2);
        if (numbers.size() != 2)
            size.fail(Reader::tr("hier werden zwei Zahlen erwartet"));
        foto.sizePx = QSize(int(numbers[0].integer(1, 1'000'000)), int(numbers[1].integer(1, 1'000'000)));
    }
    return foto;
}

NyBookText readText(const Reader &reader)
{
    NyBookText text;
    const Reader role = reader.member("role"_L1);
    const QString roleName = role.text();
    const auto knownRole
        = std::find_if(ROLE_NAMES.begin(), ROLE_NAMES.end(), [&](const RoleName &entry) { return entry.name == roleName; });
    if (knownRole == ROLE_NAMES.end())
        role.fail(Reader::tr("die Textart \"%1\" ist unbekannt").arg(roleName));
    text.role = knownRole->role;
    text.text = reader.member("text"_L1).text();
    text.rectMm = reader.member("rectMm"_L1).rect(-MAXIMUM_PAGE_MM, MAXIMUM_PAGE_MM);
    text.fontSizePt = reader.member("fontSizePt"_L1).number(1, 1000);
    if (const Reader alignment = reader.member("alignment"_L1); !alignment.isMissing()) {
        const QString name = alignment.text();
        const auto known
            = std::find_if(ALIGNMENT_NAMES.begin(), ALIGNMENT_NAMES.end(), [&](const AlignmentName &entry) { return entry.name == name; });
        if (known == ALIGNMENT_NAMES.end())
            alignment.fail(Reader::tr("die Ausrichtung \"%1\" ist unbekannt").arg(name));
        text.alignment = known->alignment;
    }
    return text;
}

NyBookPage readPage(const Reader &reader)
{
    constexpr qsizetype maximumItems = 1000;
    NyBookPage page;
    for (const Reader &photo : reader.member("photos"_L1).elements(maximumItems))
        page.photos.append(readPhoto(photo));
    if (const Reader texts = reader.member("texts"_L1); !texts.isMissing()) {
        for (const Reader &text : texts.elements(maximumItems))
            page.texts.append(readText(text));
    }
    return page;
}

NyBookProject readProject(const QJsonObject &root)
{
    const Reader reader(root, QString());
    const Reader format = reader.member("format"_L1);
    if (format.isMissing() || format.text() != FORMAT_NAME)
        format.fail(Reader::tr("das ist kein Buchprojekt"));
    const Reader version = reader.member("formatVersion"_L1);
    const qint64 versionNumber = version.integer(1, std::numeric_limits<int>::max());
    if (versionNumber > NyBookProjectFile::FormatVersion) {
        version.fail(Reader::tr("das Buch wurde mit einer neueren Programmversion gespeichert (Format %1, lesbar ist "
                                "bis Format %2). Bitte aktualisieren Sie das Programm.")
                         .arg(versionNumber)
                         .arg(NyBookProjectFile::FormatVersion));
    }
    NyBookProject project;
    project.title = reader.member("title"_L1).text();
    project.subtitle = reader.member("subtitle"_L1).text();
    project.style = NyDesignElementID(reader.member("style"_L1).text());
    if (const Reader occasions = reader.member("occasions"_L1); !occasions.isMissing()) {
        for (const Reader &occasion : occasions.elements(1000))
            project.occasions.append(occasion.text());
    }
    if (const Reader epoch = reader.member("creationDateEpoch"_L1); !epoch.isMissing())
        project.creationDateEpoch = epoch.integer(-(Q_INT64_C(1) << 52), Q_INT64_C(1) << 52);
    const Reader size = reader.member("pageSizeMm"_L1);
    const QList<Reader> sides = size.elements(2);
    if (sides.size() != 2)
        size.fail(Reader::tr("hier werden zwei Zahlen erwartet"));
    project.pageSizeMm = QSizeF(sides[0].number(10, MAXIMUM_PAGE_MM), sides[1].number(10, MAXIMUM_PAGE_MM));
    project.cover = readPage(reader.member("cover"_L1));
    for (const Reader &page : reader.member("pages"_L1).elements(MAXIMUM_PAGES))
        project.pages.append(readPage(page));
    return project;
}

/** Line and column, both from 1, of a byte offset. */
std::pair<qsizetype, qsizetype> lineAndColumn(const QByteArray &json, qsizetype offset)
{
    const QByteArrayView before = QByteArrayView(json).first(std::clamp<qsizetype>(offset, 0, json.size()));
    const qsizetype lastBreak = before.lastIndexOf('\n');
    return {before.count('\n') + 1, before.size() - lastBreak};
}

}

QByteArray NyBookProjectFile::toJson(const NyBookProject &project)
{
    QJsonArray pages;
    for (const NyBookPage &page : project.pages)
        pages.append(pageToJson(page));
    const QJsonObject root{
        {u"format"_s, QString(FORMAT_NAME)},
        {u"formatVersion"_s, FormatVersion},
        {u"title"_s, project.title},
        {u"subtitle"_s, project.subtitle},
        {u"style"_s, project.style.toString()},
        {u"occasions"_s, QJsonArray::fromStringList(project.occasions)},
        {u"creationDateEpoch"_s, project.creationDateEpoch},
        {u"pageSizeMm"_s, QJsonArray{project.pageSizeMm.width(), project.pageSizeMm.height()}},
        {u"cover"_s, pageToJson(project.cover)},
        {u"pages"_s, pages},
    };
    const QJsonDocument document(root);
    const QByteArray indented = document.toJson(QJsonDocument::Indented);
    return indented.size() <= MaximumBytes ? indented : document.toJson(QJsonDocument::Compact);
}

NyBookProjectFile::Result NyBookProjectFile::fromJson(const QByteArray &json, const QString &name)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        const auto [line, column] = lineAndColumn(json, parseError.offset);
        return {std::nullopt,
            tr("Das Buchprojekt \"%1\" ist beschädigt (nahe Zeile %2, Spalte %3: %4).")
                .arg(name, QString::number(line), QString::number(column), parseError.errorString())};
    }
    if (!document.isObject())
        return {std::nullopt, tr("Die Datei \"%1\" ist kein Buchprojekt.").arg(name)};
    try {
        return {readProject(document.object()), QString()};
    } catch (const ReadFault &fault) {
        return {std::nullopt, tr("Das Buchprojekt \"%1\" kann nicht gelesen werden (bei \"%2\": %3).").arg(name, fault.place, fault.what)};
    }
}

NyBookProjectFile::Result NyBookProjectFile::load(const QFileInfo &file)
{
    const QString name = QDir::toNativeSeparators(file.absoluteFilePath());
    QFile device(file.absoluteFilePath());
    if (!file.isFile())
        return {std::nullopt, tr("Das Buchprojekt \"%1\" ist nicht vorhanden.").arg(name)};
    if (!device.open(QIODevice::ReadOnly))
        return {std::nullopt, tr("Das Buchprojekt \"%1\" kann nicht geöffnet werden: %2").arg(name, device.errorString())};
    const QByteArray json = device.read(MaximumBytes + 1);
    if (device.error() != QFileDevice::NoError)
        return {std::nullopt, tr("Das Buchprojekt \"%1\" kann nicht gelesen werden: %2").arg(name, device.errorString())};
    if (json.size() > MaximumBytes)
        return {std::nullopt, tr("Die Datei \"%1\" ist zu groß für ein Buchprojekt.").arg(name)};
    return fromJson(json, name);
}

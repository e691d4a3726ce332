#include "NyPreInstalledDesignElementRegistry.h"

#include <QDebug>
#include <QDomDocument>

#include <NyDirectoryConfig.h>
#include <NyXMLParser.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

const QString BUILT_IN_FILE = u":/velmora/designs.xml"_s;

void readColor(const QDomElement &element, const QString &attribute, const QString &path, QColor &color)
{
    const QString text = NyXMLParser::attribute(element, attribute, QString(), true);
    if (text.isEmpty())
        return;
    const QColor read(text);
    if (read.isValid()) {
        color = read;
        return;
    }
    qWarning() << "designs:" << path << "line" << element.lineNumber() << "has no colour in" << attribute << ":" << text;
}

void readText(const QDomElement &element, const QString &attribute, QString &value)
{
    const QString text = NyXMLParser::attribute(element, attribute, QString(), true);
    if (!text.isEmpty())
        value = text;
}

}

NyPreInstalledDesignElementRegistry::NyPreInstalledDesignElementRegistry()
{
    const QString path = NyDirectoryConfig::resourceFile(u"designs.xml"_s);
    if (!path.isEmpty())
        load(path);
    if (m_styles.isEmpty() && path != BUILT_IN_FILE) {
        qWarning() << "designs:" << path << "holds no design, the built-in ones are used";
        load(BUILT_IN_FILE);
    }
    if (m_styles.isEmpty()) {
        NyDesignStyle plain;
        plain.id = NyDesignElementID(u"velmora.style.plain"_s);
        plain.name = u"Schlicht"_s;
        plain.release = NyDesignRelease::Proposals;
        m_styles.append(plain);
    }
}

NyPreInstalledDesignElementRegistry::~NyPreInstalledDesignElementRegistry() = default;

void NyPreInstalledDesignElementRegistry::load(const QString &path)
{
    const QDomDocument document = NyXMLParser::parseFile(path);
    const QDomElement root = document.documentElement();
    for (QDomElement element = root.firstChildElement(u"design"_s); !element.isNull(); element = element.nextSiblingElement(u"design"_s))
        addStyle(element, path);
}

void NyPreInstalledDesignElementRegistry::addStyle(const QDomElement &element, const QString &path)
{
    NyDesignStyle style;
    style.id = NyDesignElementID(NyXMLParser::attribute(element, u"id"_s, QString(), true));
    if (!style.isValid()) {
        qWarning() << "designs:" << path << "line" << element.lineNumber() << "has a design without a usable id:" << style.id.toString();
        return;
    }
    if (this->style(style.id).isValid()) {
        qWarning() << "designs:" << path << "line" << element.lineNumber() << "repeats the design" << style.id.toString();
        return;
    }
    style.name = NyXMLParser::attribute(element, u"name"_s, style.id.toString(), true);
    style.release = NyXMLParser::boolAttribute(element, u"proposal"_s, false) ? NyDesignRelease::Proposals : NyDesignRelease::ManualOnly;
    const QDomElement page = element.firstChildElement(u"page"_s);
    readColor(page, u"background"_s, path, style.pageBackground);
    readColor(page, u"text"_s, path, style.textColor);
    const QDomElement cover = element.firstChildElement(u"cover"_s);
    readColor(cover, u"background"_s, path, style.coverBackground);
    readColor(cover, u"text"_s, path, style.coverTextColor);
    readColor(cover, u"accent"_s, path, style.accentColor);
    const QDomElement fonts = element.firstChildElement(u"fonts"_s);
    readText(fonts, u"title"_s, style.titleFonts);
    readText(fonts, u"body"_s, style.bodyFonts);
    m_styles.append(style);
}

NyDesignElementIDSet NyPreInstalledDesignElementRegistry::quilloDesignElementIDs() const
{
    NyDesignElementIDSet ids;
    for (const NyDesignStyle &style : m_styles) {
        if (style.release == NyDesignRelease::Proposals)
            ids.insert(style.id);
    }
    return ids;
}

NyDesignStyle NyPreInstalledDesignElementRegistry::style(const NyDesignElementID &id) const
{
    for (const NyDesignStyle &style : m_styles) {
        if (style.id == id)
            return style;
    }
    return {};
}

NyDesignStyle NyPreInstalledDesignElementRegistry::firstKnownStyle(const QList<NyDesignElementID> &wanted) const
{
    for (const NyDesignElementID &id : wanted) {
        const NyDesignStyle found = style(id);
        if (found.isValid())
            return found;
    }
    return defaultStyle();
}

NyDesignStyle NyPreInstalledDesignElementRegistry::defaultStyle() const
{
    for (const NyDesignStyle &style : m_styles) {
        if (style.release == NyDesignRelease::Proposals)
            return style;
    }
    return m_styles.constFirst();
}

#include "NyXMLConfig.h"

#include <QtCore/QDebug>
#include <QtCore/QHash>
#include <QtCore/QMutexLocker>
#include <QtXml/QDomDocument>
#include <QtXml/QDomNamedNodeMap>

#include "NyXMLParser.h"

/** One reading of the file. Never changed, so threads share it without a lock. */
struct NyXMLConfig::Content
{
    std::optional<QString> text(const QString &node, const QString &attribute) const
    {
        const auto section = sections.constFind(node);
        if (section == sections.constEnd())
            return std::nullopt;
        const auto found = section->constFind(attribute);
        return found == section->constEnd() ? std::nullopt : std::optional(*found);
    }

    QString path;
    QDomDocument document;
    QHash<QString, QHash<QString, QString>> sections;
};

NyXMLConfig::NyXMLConfig(const NyResourceFile &file, QObject *parent)
    : QObject(parent)
    , m_file(file)
    , m_content(read(file))
{
}

NyXMLConfig::~NyXMLConfig() = default;

void NyXMLConfig::reload()
{
    std::shared_ptr<const Content> fresh = read(m_file);
    const QMutexLocker locker(&m_mutex);
    m_content = std::move(fresh);
    m_reported.clear();
}

int NyXMLConfig::getIntAttributeOfNode(const QString &node, const QString &attribute, int defaultValue) const
{
    const std::shared_ptr<const Content> now = content();
    const std::optional<QString> text = now->text(node, attribute);
    if (!text)
        return defaultValue;
    const std::optional<int> value = NyXMLParser::toInt(*text);
    if (!value)
        reportValue(*now, node, attribute, *text, "number:");
    return value.value_or(defaultValue);
}

bool NyXMLConfig::getBoolAttributeOfNode(const QString &node, const QString &attribute, bool defaultValue) const
{
    const std::shared_ptr<const Content> now = content();
    const std::optional<QString> text = now->text(node, attribute);
    if (!text)
        return defaultValue;
    const std::optional<bool> value = NyXMLParser::toBool(*text);
    if (!value)
        reportValue(*now, node, attribute, *text, "yes or no:");
    return value.value_or(defaultValue);
}

QString NyXMLConfig::getAttributeOfNode(const QString &node, const QString &attribute, const QString &defaultValue) const
{
    return content()->text(node, attribute).value_or(defaultValue);
}

QDomElement NyXMLConfig::documentElement() const
{
    return content()->document.documentElement();
}

std::shared_ptr<const NyXMLConfig::Content> NyXMLConfig::read(const NyResourceFile &file)
{
    auto content = std::make_shared<Content>();
    content->path = file.path();
    if (content->path.isEmpty())
        return content;
    content->document = NyXMLParser::parseFile(content->path);
    for (QDomElement section = content->document.documentElement().firstChildElement(); !section.isNull();
         section = section.nextSiblingElement()) {
        if (content->sections.contains(section.tagName()))
            continue;
        QHash<QString, QString> &values = content->sections[section.tagName()];
        const QDomNamedNodeMap attributes = section.attributes();
        for (int i = 0; i < attributes.count(); ++i)
            values.insert(attributes.item(i).nodeName(), attributes.item(i).nodeValue());
    }
    return content;
}

std::shared_ptr<const NyXMLConfig::Content> NyXMLConfig::content() const
{
    const QMutexLocker locker(&m_mutex);
    return m_content;
}

void NyXMLConfig::reportValue(
    const Content &content, const QString &node, const QString &attribute, const QString &text, const char *expected) const
{
    {
        const QMutexLocker locker(&m_mutex);
        const QString id = node + QLatin1Char('\n') + attribute;
        if (m_reported.contains(id))
            return;
        m_reported.insert(id);
    }
    qWarning().noquote() << "file" << content.path << "section" << node << "attribute" << attribute << "is no" << expected << text;
}

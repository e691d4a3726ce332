#include "NyXMLParser.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QXmlStreamReader>

namespace
{

constexpr qint64 LargestFile = 16 * 1024 * 1024;
/** The document's destructor recurses, so a deeply nested file would exhaust the stack. */
constexpr int DeepestNesting = 256;

void reportProblem(const QString &path, qint64 line, qint64 column, const QString &problem)
{
    qWarning().noquote() << "cannot parse" << path << "line" << line << "column" << column << problem;
}

bool isTooDeep(const QString &path, const QByteArray &content)
{
    QXmlStreamReader xml(content);
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        if (token == QXmlStreamReader::StartElement && ++depth > DeepestNesting) {
            reportProblem(path, xml.lineNumber(), xml.columnNumber(), QStringLiteral("nested too deeply"));
            return true;
        }
    }
    return false;
}

void reportValue(const QDomElement &element, const QString &name, const QString &text, const char *expected)
{
    qWarning().noquote() << "line" << element.lineNumber() << "element" << element.tagName() << "attribute" << name << "is no" << expected
                         << text;
}

} // namespace

QString NyXMLParser::attribute(const QDomElement &element, const QString &name, const QString &defaultValue, bool trimmed)
{
    if (!element.hasAttribute(name))
        return defaultValue;
    const QString text = element.attribute(name);
    return trimmed ? text.trimmed() : text;
}

bool NyXMLParser::boolAttribute(const QDomElement &element, const QString &name, bool defaultValue)
{
    if (!element.hasAttribute(name))
        return defaultValue;
    const QString text = element.attribute(name);
    const std::optional<bool> value = toBool(text);
    if (!value)
        reportValue(element, name, text, "yes or no:");
    return value.value_or(defaultValue);
}

int NyXMLParser::intAttribute(const QDomElement &element, const QString &name, int defaultValue)
{
    if (!element.hasAttribute(name))
        return defaultValue;
    const QString text = element.attribute(name);
    const std::optional<int> value = toInt(text);
    if (!value)
        reportValue(element, name, text, "number:");
    return value.value_or(defaultValue);
}

std::optional<bool> NyXMLParser::toBool(QStringView text)
{
    const QString word = text.trimmed().toString().toLower();
    if (word == u"true" || word == u"1" || word == u"yes" || word == u"on")
        return true;
    if (word == u"false" || word == u"0" || word == u"no" || word == u"off")
        return false;
    return std::nullopt;
}

std::optional<int> NyXMLParser::toInt(QStringView text)
{
    bool isNumber = false;
    const int value = text.trimmed().toInt(&isNumber, 10);
    return isNumber ? std::optional(value) : std::nullopt;
}

QDomDocument NyXMLParser::parseFile(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "cannot read" << path << file.errorString();
        return {};
    }
    const QByteArray content = file.read(LargestFile + 1);
    if (content.size() > LargestFile) {
        reportProblem(path, 1, 1, QStringLiteral("too large"));
        return {};
    }
    if (isTooDeep(path, content))
        return {};
    QDomDocument document;
    QString problem;
    int line = 0;
    int column = 0;
    if (!document.setContent(content, &problem, &line, &column)) {
        reportProblem(path, line, column, problem);
        return {};
    }
    return document;
}

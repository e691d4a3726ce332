#include "NyJsonParser.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonParseError>

namespace
{

// Far above any description or project file; more would be read into memory whole for nothing.
constexpr qint64 LargestFile = qint64(256) * 1024 * 1024;

} // namespace

QJsonDocument NyJsonParser::loadDocument(const QFileInfo &file)
{
    const QString path = file.absoluteFilePath();
    QFile source(path);
    if (!QFileInfo(path).isFile() || !source.open(QIODevice::ReadOnly)) {
        qDebug().noquote() << "cannot read" << path << source.errorString();
        return {};
    }
    if (source.size() > LargestFile) {
        qDebug().noquote() << "too large to read" << path << source.size();
        return {};
    }
    QByteArray content = source.readAll();
    if (content.startsWith("\xef\xbb\xbf"))
        content.remove(0, 3);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        qDebug().noquote() << "cannot parse" << path << "at byte" << error.offset << error.errorString();
        return {};
    }
    return document;
}

QJsonArray NyJsonParser::createMenuJson(const QString &argument)
{
    const auto entry = [&argument](const QString &title, const QString &verb) {
        return QJsonObject{
            {QStringLiteral("title"), title},
            {QStringLiteral("action"), verb + QLatin1Char(':') + argument},
        };
    };
    return {
        entry(QCoreApplication::translate("NyJsonParser", "Vorschlag öffnen"), QStringLiteral("open")),
        entry(QCoreApplication::translate("NyJsonParser", "Vorschlag löschen"), QStringLiteral("delete")),
    };
}

#include "NyKeyAccount.h"

#include <optional>

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>

#include "NyDirectoryConfig.h"

namespace
{

constexpr int DefaultId = 1;
constexpr qint64 LargestFile = 1 << 20;

std::optional<bool> toBool(const QString &text)
{
    const QString word = text.trimmed().toLower();
    if (word == u"true" || word == u"1" || word == u"yes" || word == u"on")
        return true;
    if (word == u"false" || word == u"0" || word == u"no" || word == u"off")
        return false;
    return std::nullopt;
}

} // namespace

NyKeyAccount::NyKeyAccount()
    : m_keyAccountId(DefaultId, false)
    , m_name(QStringLiteral("VELMORA"))
{
    const QString path = NyDirectoryConfig::resourceFile(QStringLiteral("installation.xml"));
    if (!path.isEmpty())
        readFile(path);
}

NyKeyAccount::~NyKeyAccount() = default;

void NyKeyAccount::readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "cannot read" << path << file.errorString();
        return;
    }
    QXmlStreamReader xml(file.read(LargestFile));
    int id = DefaultId;
    QString name = m_name;
    bool testClient = false;
    bool found = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != u"keyAccount" || found)
            continue;
        found = true;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (attributes.hasAttribute(QStringLiteral("id"))) {
            bool isNumber = false;
            const int number = attributes.value(QStringLiteral("id")).trimmed().toInt(&isNumber);
            if (isNumber)
                id = number;
            else
                qWarning().noquote() << "no number in" << path << "keyAccount id" << attributes.value(QStringLiteral("id"));
        }
        if (attributes.hasAttribute(QStringLiteral("name")))
            name = attributes.value(QStringLiteral("name")).toString();
        if (attributes.hasAttribute(QStringLiteral("testClient"))) {
            const QString text = attributes.value(QStringLiteral("testClient")).toString();
            if (const std::optional<bool> value = toBool(text))
                testClient = *value;
            else
                qWarning().noquote() << "no yes or no in" << path << "keyAccount testClient" << text;
        }
    }
    if (xml.hasError()) {
        qWarning().noquote() << "cannot parse" << path << "line" << xml.lineNumber() << "column" << xml.columnNumber() << xml.errorString();
        return;
    }
    m_keyAccountId = NyKeyAccountId(id, testClient);
    m_name = name;
}

#include "NyGUIWidgetsConfig.h"

#include <QDebug>
#include <QFile>

NyGUIWidgetsConfig::NyGUIWidgetsConfig() = default;

NyGUIWidgetsConfig::~NyGUIWidgetsConfig() = default;

QIcon NyGUIWidgetsConfig::loadIconById(const QString &id) const
{
    const QString path = QStringLiteral(":/velmora/icons/%1.svg").arg(id);
    // A QIcon made from a path that does not exist is not null.
    if (id.isEmpty() || !QFile::exists(path)) {
        qDebug() << "there is no icon with the id" << id;
        return {};
    }
    return QIcon(path);
}

#pragma once

#include "TestSupport.h"

#include <NyQuilloServiceSettings.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/** The files of proposals in the folder of the test's own home. */
namespace ProposalFiles
{
inline QString folder()
{
    return NyQuilloServiceSettings::instance().bookProposalFileFolder();
}

/** An empty folder of proposals, whatever was there. */
inline bool reset()
{
    QFile::setPermissions(folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QDir(folder()).removeRecursively();
    QFile::remove(QDir::cleanPath(folder()));
    return QDir().mkpath(folder());
}

inline QJsonObject description(const QString &id, const QString &headline, int created)
{
    const auto entry = [&id](const QString &title, const QString &verb) {
        return QJsonObject{{QStringLiteral("title"), title}, {QStringLiteral("action"), verb + u':' + id}};
    };
    return {
        {QStringLiteral("headline"), headline},
        {QStringLiteral("creationDateEpoch"), created},
        {QStringLiteral("menu"),
            QJsonArray{entry(QStringLiteral("Vorschlag öffnen"), QStringLiteral("open")),
                entry(QStringLiteral("Vorschlag löschen"), QStringLiteral("delete"))}},
    };
}

inline bool write(const QString &name, const QByteArray &content)
{
    return TestSupport::writeFile(folder() + name, content);
}

inline bool writeDescription(const QString &id, const QJsonObject &description)
{
    return write(id + QStringLiteral(".json"), QJsonDocument(description).toJson());
}

/** Description and project file of a proposal without a preview. */
inline bool writeProposal(const QString &id, const QString &headline, int created, const QByteArray &project = "{}")
{
    return writeDescription(id, description(id, headline, created)) && write(id, project);
}
}

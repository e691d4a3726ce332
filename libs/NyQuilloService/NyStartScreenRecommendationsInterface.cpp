#include "NyStartScreenRecommendationsInterface.h"

#include "NyQuilloServiceController.h"
#include "NyQuilloServiceSettings.h"

#include <NyFotoDatabaseRegistry.h>
#include <NyInstallationSettings.h>
#include <NyJsonParser.h>
#include <NyLogger.h>

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QList>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace
{
const QString CREATION_DATE_KEY = QStringLiteral("creationDateEpoch");
const QString MENU_KEY = QStringLiteral("menu");
const QString ACTION_KEY = QStringLiteral("action");

bool isNewer(const QJsonObject &a, const QJsonObject &b)
{
    return a.value(CREATION_DATE_KEY).toInt(0) > b.value(CREATION_DATE_KEY).toInt(0);
}

void storeAutoStartService(bool on)
{
    NyLogger::instance().logQuilloService(QStringLiteral("setAutoStartService VALUE:%1 SOURCE:startscreen").arg(on ? 1 : 0));
    NyInstallationSettings &installation = NyInstallationSettings::instance();
    installation.setAutoStartService(on, false);
    installation.applyAutoStartServiceSetting();
}

void logAutoStartService()
{
    qDebug() << "autoStartService:" << (NyInstallationSettings::instance().autoStartService() ? "true" : "false");
}
}

NyStartScreenRecommendationsInterface::NyStartScreenRecommendationsInterface() = default;

NyStartScreenRecommendationsInterface::~NyStartScreenRecommendationsInterface() = default;

QString NyStartScreenRecommendationsInterface::getRecommendationsPath() const
{
    const QString folder = settings().searchHomeFolder();
    const QUrl url = QUrl::fromUserInput(folder);
    return url.isValid() ? NyFotoDatabaseRegistry::instance().humanReadable(url) : folder;
}

QString NyStartScreenRecommendationsInterface::getRecommendations() const
{
    const QDir folder(settings().bookProposalFileFolder());
    const QFileInfoList files
        = folder.entryInfoList({QStringLiteral("*.nqp.json"), QStringLiteral("*.nqpx.json")}, QDir::NoFilter, QDir::Time);

    QList<QJsonObject> proposals;
    for (const QFileInfo &file : files) {
        const QJsonDocument document = NyJsonParser::loadDocument(file);
        if (document.isObject())
            proposals.append(apply730Patch(document.object()));
        else
            qWarning() << file.absoluteFilePath() << " has unexpected format or is empty: " << document.isNull() << document.isArray();
    }
    std::sort(proposals.begin(), proposals.end(), &isNewer);

    QJsonArray list;
    for (const QJsonObject &proposal : std::as_const(proposals))
        list.append(proposal);
    return QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Indented));
}

int NyStartScreenRecommendationsInterface::getUnreadRecommendations() const
{
    const QFileInfoList files = projectFiles();
    const QDateTime last = lastView();
    return int(std::count_if(files.cbegin(), files.cend(), [&last](const QFileInfo &file) { return isUnread(file, last); }));
}

bool NyStartScreenRecommendationsInterface::hasRecommendations() const
{
    return getUnreadRecommendations() != 0;
}

QFileInfoList NyStartScreenRecommendationsInterface::projectFiles()
{
    const QDir folder(NyQuilloServiceSettings::instance().bookProposalFileFolder());
    return folder.entryInfoList({QStringLiteral("*.nqp"), QStringLiteral("*.nqpx")}, QDir::NoFilter, QDir::NoSort);
}

bool NyStartScreenRecommendationsInterface::isUnread(const QFileInfo &projectFile, const QDateTime &lastView)
{
    if (!lastView.isValid())
        return true;
    // Not every file system knows it.
    const QDateTime birth = projectFile.fileTime(QFileDevice::FileBirthTime);
    return birth.isValid() && birth > lastView;
}

QDateTime NyStartScreenRecommendationsInterface::lastView() const
{
    return settings().lastStartScreenProposalViewDate();
}

void NyStartScreenRecommendationsInterface::userReadRecommendations()
{
    settings().setLastStartScreenProposalViewDate(QDateTime::currentDateTime());
}

bool NyStartScreenRecommendationsInterface::recommendationsActivated() const
{
    return NyInstallationSettings::instance().autoStartService();
}

void NyStartScreenRecommendationsInterface::activateRecommendations()
{
    storeAutoStartService(true);
    logAutoStartService();
}

void NyStartScreenRecommendationsInterface::deactivateRecommendations()
{
    storeAutoStartService(false);
    NyQuilloServiceController::quitRunningService();
    logAutoStartService();
}

QJsonObject NyStartScreenRecommendationsInterface::apply730Patch(const QJsonObject &proposal)
{
    if (proposal.contains(MENU_KEY))
        return proposal;
    const QStringList parts = proposal.value(ACTION_KEY).toString().split(QLatin1Char(':'), Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (parts.size() != 2)
        return {};
    QJsonObject patched = proposal;
    patched.insert(MENU_KEY, NyJsonParser::createMenuJson(parts.at(1)));
    return patched;
}

NyQuilloServiceSettings &NyStartScreenRecommendationsInterface::settings() const
{
    return NyQuilloServiceSettings::instance();
}

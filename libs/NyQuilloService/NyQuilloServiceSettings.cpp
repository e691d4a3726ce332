#include "NyQuilloServiceSettings.h"

#include <NyDirectoryConfig.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyProgramConfig.h>
#include <NySettingsLock.h>

#include <QDir>
#include <QFileInfo>

namespace
{
constexpr bool programScope = true;
constexpr bool commonScope = false;

template <typename T>
NyConfigItem<T> item(const QString &key, const T &defaultValue, bool scope)
{
    return NyConfigItem<T>(defaultValue, defaultValue, key, scope);
}

template <typename T>
void assignIfDifferent(NyConfigItem<T> &configItem, const T &value)
{
    if (configItem.value() != value)
        configItem.setValue(value);
}
}

NyQuilloServiceSettings::NyQuilloServiceSettings()
    : m_lastProductSuggestionDate(
        item(QStringLiteral("lastProductSuggestionDate"), QDateTime::currentDateTime().addDays(-365), programScope))
    , m_lastBookProposalId(item(QStringLiteral("lastBookProposalFilePath"), QString(), programScope))
    , m_nextToastRepeat(item(QStringLiteral("nextToastRepeat"), QDate(), programScope))
    , m_lastStartScreenProposalViewDate(item(QStringLiteral("lastStartScreenProposalView"), QDateTime(), programScope))
    , m_productSuggestionCount(item(QStringLiteral("productSuggestionCounter"), 0, programScope))
    , m_searchHomeFolder(item(QStringLiteral("quilloServiceSearchHome"), NyFotoSettings::instance().picturesHome(), commonScope))
    , m_allowToastMessages(item(QStringLiteral("quilloServiceAllowToastMessages"), true, commonScope))
{
}

NyQuilloServiceSettings::~NyQuilloServiceSettings() = default;

QDateTime NyQuilloServiceSettings::lastProductSuggestionDate() const
{
    return m_lastProductSuggestionDate.value();
}

void NyQuilloServiceSettings::setLastProductSuggestionDate(const QDateTime &date)
{
    assignIfDifferent(m_lastProductSuggestionDate, date);
    saveSettings();
}

int NyQuilloServiceSettings::productSuggestionCount() const
{
    return m_productSuggestionCount.value();
}

void NyQuilloServiceSettings::increaseProductSuggestionCount()
{
    m_productSuggestionCount.setValue(m_productSuggestionCount.value() + 1);
    saveSettings();
}

QString NyQuilloServiceSettings::lastBookProposalId() const
{
    return m_lastBookProposalId.value();
}

void NyQuilloServiceSettings::setLastBookProposalId(const QString &id)
{
    assignIfDifferent(m_lastBookProposalId, id);
    saveSettings();
}

QDate NyQuilloServiceSettings::nextToastRepeat() const
{
    return m_nextToastRepeat.value();
}

void NyQuilloServiceSettings::setNextToastRepeat(const QDate &date)
{
    assignIfDifferent(m_nextToastRepeat, date);
    saveSettings();
}

QDateTime NyQuilloServiceSettings::recommendedNextToastRepeat() const
{
    return QDateTime(nextToastRepeat(), QTime(18, 0, 0, 0), Qt::LocalTime);
}

QDateTime NyQuilloServiceSettings::lastStartScreenProposalViewDate() const
{
    return m_lastStartScreenProposalViewDate.value();
}

void NyQuilloServiceSettings::setLastStartScreenProposalViewDate(const QDateTime &date)
{
    assignIfDifferent(m_lastStartScreenProposalViewDate, date);
    saveSettings();
}

QString NyQuilloServiceSettings::searchHomeFolder() const
{
    if (isQuilloService())
        load(m_searchHomeFolder);
    return m_searchHomeFolder.value();
}

void NyQuilloServiceSettings::setSearchHomeFolder(const QString &folder)
{
    if (m_searchHomeFolder.value() == folder)
        return;
    m_searchHomeFolder.setValue(folder);
    Q_EMIT searchHomeChanged();
}

bool NyQuilloServiceSettings::allowToastMessages() const
{
    if (isQuilloService())
        load(m_allowToastMessages);
    return m_allowToastMessages.value();
}

void NyQuilloServiceSettings::setAllowToastMessages(bool allow)
{
    assignIfDifferent(m_allowToastMessages, allow);
}

NyQuilloServiceMode NyQuilloServiceSettings::serviceMode() const
{
    return m_serviceMode;
}

void NyQuilloServiceSettings::setServiceMode(NyQuilloServiceMode mode)
{
    m_serviceMode = mode;
}

bool NyQuilloServiceSettings::isQuilloService() const
{
    return NyProgramConfig::instance().programID() == NyProgramID::QuilloService;
}

QString NyQuilloServiceSettings::bookProposalFileFolder() const
{
    return NyDirectoryConfig::instance().bookProposalFolder().absoluteFilePath();
}

QString NyQuilloServiceSettings::projectFile(const QString &projectId) const
{
    return QDir(bookProposalFileFolder()).filePath(projectId);
}

QString NyQuilloServiceSettings::projectIconFile(const QString &projectId) const
{
    return projectFile(projectId) + QStringLiteral(".png");
}

QString NyQuilloServiceSettings::projectId(const QString &filePath) const
{
    return QFileInfo(filePath).fileName();
}

void NyQuilloServiceSettings::ensureRequiredFoldersExist()
{
    const QDir folder(bookProposalFileFolder());
    if (!folder.exists())
        folder.mkpath(QStringLiteral("."));
}

void NyQuilloServiceSettings::loadSettings()
{
    const NySettingsLock lock;
    load(m_lastProductSuggestionDate);
    load(m_nextToastRepeat);
    load(m_lastBookProposalId);
    load(m_lastStartScreenProposalViewDate);
    load(m_productSuggestionCount);
    load(m_allowToastMessages);
    load(m_searchHomeFolder);
    ensureRequiredFoldersExist();
}

void NyQuilloServiceSettings::reloadForStartScreen()
{
    load(m_lastStartScreenProposalViewDate);
    load(m_searchHomeFolder);
}

void NyQuilloServiceSettings::saveSettings()
{
    const NySettingsLock lock;
    save(m_lastProductSuggestionDate);
    save(m_lastBookProposalId);
    save(m_nextToastRepeat);
    save(m_lastStartScreenProposalViewDate);
    save(m_productSuggestionCount);
    save(m_allowToastMessages);
    save(m_searchHomeFolder);
}

void NyQuilloServiceSettings::resetSettings()
{
    const NySettingsLock lock;
    assignIfDifferent(m_lastProductSuggestionDate, m_lastProductSuggestionDate.defaultValue());
    assignIfDifferent(m_productSuggestionCount, m_productSuggestionCount.defaultValue());
    save(m_lastProductSuggestionDate);
    save(m_productSuggestionCount);
    NyFotoListRegistry::instance().clearFotoUsedForBookProposals();
}

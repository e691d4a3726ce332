#include "NySettings.h"

#include <optional>

#include "NyProgramConfig.h"
#include "NySettingsLock.h"
#include "NySettingsStore.h"

namespace
{

template <class T>
QString groupOf(const NyConfigItem<T> &item)
{
    if (!item.isProgramScope())
        return QStringLiteral("common");
    const NyProgramConfig &program = NyProgramConfig::instance();
    return program.commandName(program.programID());
}

QString encoded(const QDateTime &value)
{
    // With its offset, so that it stays the same moment when the user travels.
    return value.isValid() ? value.toOffsetFromUtc(value.offsetFromUtc()).toString(Qt::ISODateWithMs) : QString();
}

QString encoded(const QDate &value)
{
    return value.isValid() ? value.toString(Qt::ISODate) : QString();
}

QString encoded(const QString &value)
{
    return value;
}

QString encoded(int value)
{
    return QString::number(value);
}

QString encoded(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

bool decode(const QString &text, QDateTime &value)
{
    const QDateTime read = QDateTime::fromString(text, Qt::ISODateWithMs);
    value = read.isValid() ? read.toLocalTime() : QDateTime();
    return value.isValid() || text.isEmpty();
}

bool decode(const QString &text, QDate &value)
{
    value = QDate::fromString(text, Qt::ISODate);
    return value.isValid() || text.isEmpty();
}

bool decode(const QString &text, QString &value)
{
    value = text;
    return true;
}

bool decode(const QString &text, int &value)
{
    bool isNumber = false;
    value = text.toInt(&isNumber);
    return isNumber;
}

bool decode(const QString &text, bool &value)
{
    const QString word = text.toLower();
    value = word == u"true" || word == u"1";
    return value || word == u"false" || word == u"0";
}

template <class T>
std::optional<T> storedValue(const QString &group, const QString &key)
{
    NySettingsStore &store = NySettingsStore::instance();
    const std::optional<QString> text = store.value(group, key);
    if (!text)
        return std::nullopt;
    T value{};
    if (decode(*text, value))
        return value;
    store.reportUnusable(group, key, *text);
    return std::nullopt;
}

} // namespace

NySettings::NySettings(QObject *parent)
    : QObject(parent)
{
}

NySettings::~NySettings() = default;

template <class T>
void NySettings::loadItem(NyConfigItem<T> &item) const
{
    if (const std::optional<T> value = storedValue<T>(groupOf(item), item.key()))
        item.setStored(*value);
}

template <class T>
void NySettings::saveItem(NyConfigItem<T> &item) const
{
    const NySettingsLock lock;
    const QString group = groupOf(item);
    if (!item.isChanged() && storedValue<T>(group, item.key()))
        return;
    NySettingsStore::instance().setValue(group, item.key(), encoded(item.value()), std::is_same_v<T, QString>);
    item.setStored(item.value());
}

void NySettings::load(NyConfigItem<QDateTime> &item) const
{
    loadItem(item);
}

void NySettings::load(NyConfigItem<QDate> &item) const
{
    loadItem(item);
}

void NySettings::load(NyConfigItem<QString> &item) const
{
    loadItem(item);
}

void NySettings::load(NyConfigItem<int> &item) const
{
    loadItem(item);
}

void NySettings::load(NyConfigItem<bool> &item) const
{
    loadItem(item);
}

void NySettings::save(NyConfigItem<QDateTime> &item) const
{
    saveItem(item);
}

void NySettings::save(NyConfigItem<QDate> &item) const
{
    saveItem(item);
}

void NySettings::save(NyConfigItem<QString> &item) const
{
    saveItem(item);
}

void NySettings::save(NyConfigItem<int> &item) const
{
    saveItem(item);
}

void NySettings::save(NyConfigItem<bool> &item) const
{
    saveItem(item);
}

bool NySettings::isEverythingSaved() const
{
    return !NySettingsStore::instance().hasPending();
}

void NySettings::applyStartupRuleInternal(int) { }

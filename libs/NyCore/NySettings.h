#pragma once

#include <QtCore/QDate>
#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QString>

#include "NyConfigItem.h"
#include "nycore_export.h"

/**
 * The base of a program's settings: keeps single items in the store that all programs of the user share.
 *
 * The store is the file NyDirectoryConfig::settingsFile(). Reading needs no lock and always sees what another process wrote
 * last. An operation on several items that belong together takes a NySettingsLock around them; what is saved inside is then written
 * at once when the lock is released. Different objects may be used on different threads.
 */
class NYCORE_EXPORT NySettings : public QObject
{
    Q_OBJECT

public:
    explicit NySettings(QObject *parent = nullptr);
    ~NySettings() override;

    /** Reads the item. Its value stays as it is when the key is not stored, or, with a warning, when what is stored is no such value. */
    void load(NyConfigItem<QDateTime> &item) const;
    void load(NyConfigItem<QDate> &item) const;
    void load(NyConfigItem<QString> &item) const;
    void load(NyConfigItem<int> &item) const;
    void load(NyConfigItem<bool> &item) const;

    /**
     * Writes the item, unless it is stored and this process has not changed it since it last read or wrote it: another process
     * may have. A failure is a warning: the file keeps what it has, and the change is written together with the next one.
     */
    void save(NyConfigItem<QDateTime> &item) const;
    void save(NyConfigItem<QDate> &item) const;
    void save(NyConfigItem<QString> &item) const;
    void save(NyConfigItem<int> &item) const;
    void save(NyConfigItem<bool> &item) const;

    /** Whether all that this process has saved so far is in the file; false after a failure, until it could be written. */
    bool isEverythingSaved() const;

protected:
    /** For settings that follow a rule of the program's start-up; does nothing here. */
    virtual void applyStartupRuleInternal(int rule);

private:
    Q_DISABLE_COPY_MOVE(NySettings)

    template <class T>
    void loadItem(NyConfigItem<T> &item) const;
    template <class T>
    void saveItem(NyConfigItem<T> &item) const;
};

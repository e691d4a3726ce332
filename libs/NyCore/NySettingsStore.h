#pragma once

#include <memory>
#include <optional>
#include <utility>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QLockFile>
#include <QtCore/QMutex>
#include <QtCore/QRecursiveMutex>
#include <QtCore/QSet>
#include <QtCore/QString>

/**
 * The file behind NySettings: groups of keys with a text each, in the INI form, UTF-8.
 *
 * Comments and keys of others stay when the file is written. Thread-safe.
 */
class NySettingsStore
{
public:
    static NySettingsStore &instance();

    /** The text that is stored now, by whatever process; none when the key is not there. */
    std::optional<QString> value(const QString &group, const QString &key);

    /** Takes the text over; it is in the file when the last enclosing lock is released. */
    void setValue(const QString &group, const QString &key, const QString &text, bool quoted);

    /** Whether texts wait to be written: a lock is held, or writing failed. */
    bool hasPending();

    /** Warns about a stored text that is no value of its type, once for each. */
    void reportUnusable(const QString &group, const QString &key, const QString &text);

    /** Both return whether this thread (entered) and this process (locked) hold the store. */
    struct Hold
    {
        bool entered = false;
        bool locked = false;
    };
    Hold lock();
    void unlock(Hold hold);

private:
    struct Line
    {
        QByteArray text;
        QString group;
        QString key;
    };
    struct Value
    {
        QString text;
        bool quoted = false;
    };
    using Key = std::pair<QString, QString>;
    enum class FileState { Missing, Good, Broken, Unreadable };
    struct Stamp
    {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = -1;
        qint64 modifiedNs = 0;
        qint64 changedNs = 0;
        bool operator==(const Stamp &) const = default;
    };
    struct Document
    {
        QList<Line> lines;
        QHash<Key, QString> values;
        QString problem;
    };

    NySettingsStore();
    Q_DISABLE_COPY_MOVE(NySettingsStore)

    static std::optional<Stamp> stampOf(const QString &path);
    static bool parse(QByteArray content, Document &document);
    static void apply(Document &document, const Key &key, const Value &value);

    FileState refresh();
    void setBrokenFileAside();
    void writePending();

    const QString m_path;

    QRecursiveMutex m_holder;
    int m_depth = 0;
    std::unique_ptr<QLockFile> m_lockFile;

    QMutex m_data;
    Document m_document;
    FileState m_state = FileState::Missing;
    std::optional<Stamp> m_stamp;
    QList<std::pair<Key, Value>> m_pending;
    QSet<QString> m_reported;
};

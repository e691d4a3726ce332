#include "NySettingsStore.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMutexLocker>
#include <QtCore/QSaveFile>
#include <QtCore/QStringDecoder>
#include <QtCore/QThread>

#include <sys/stat.h>

#include "NyDirectoryConfig.h"

namespace
{

constexpr int LongestWaitMs = 3000;
constexpr int LockPollMs = 5;
/** A lock file without a readable owner is left over from a crash or a full disk once it is this old. */
constexpr int OwnerlessLockMs = 5000;
constexpr qint64 LargestFile = 16 * 1024 * 1024;
/** File times move in steps of some milliseconds: a file younger than this may have changed again with the same times. */
constexpr qint64 SettledAfterNs = 100'000'000;

QString decoded(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes);
}

/** Group and key names reduced to letters that mean nothing in the file's form. */
QByteArray encodedName(const QString &name)
{
    return name.toUtf8().toPercentEncoding();
}

QString decodedName(const QByteArray &bytes)
{
    return decoded(QByteArray::fromPercentEncoding(bytes));
}

QByteArray quotedText(const QString &text)
{
    QString result;
    result.reserve(text.size() + 2);
    result += QLatin1Char('"');
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            result += QLatin1Char('\\');
            result += c;
        } else if (c == QLatin1Char('\n')) {
            result += QStringLiteral("\\n");
        } else if (isPair) {
            result += c;
            result += text.at(++i);
        } else if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.isSurrogate() || c.unicode() == 0x2028 || c.unicode() == 0x2029
            || c.unicode() == 0xfeff || c.unicode() >= 0xfffe) {
            result += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            result += c;
        }
    }
    result += QLatin1Char('"');
    return result.toUtf8();
}

/** The text of a value as it stands in the file; nothing when its quotes or escapes are broken. */
std::optional<QString> unquotedText(const QByteArray &bytes)
{
    const QString text = decoded(bytes);
    if (!text.startsWith(QLatin1Char('"')))
        return text;
    QString result;
    qsizetype i = 1;
    for (; i < text.size() && text.at(i) != QLatin1Char('"'); ++i) {
        if (text.at(i) != QLatin1Char('\\')) {
            result += text.at(i);
            continue;
        }
        if (++i >= text.size())
            return std::nullopt;
        const QChar c = text.at(i);
        if (c == QLatin1Char('n')) {
            result += QLatin1Char('\n');
        } else if (c == QLatin1Char('u')) {
            bool isNumber = false;
            const ushort code = text.mid(i + 1, 4).toUShort(&isNumber, 16);
            if (!isNumber || i + 4 >= text.size())
                return std::nullopt;
            result += QChar(code);
            i += 4;
        } else if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            result += c;
        } else {
            return std::nullopt;
        }
    }
    return i == text.size() - 1 ? std::optional(result) : std::nullopt;
}

} // namespace

NySettingsStore &NySettingsStore::instance()
{
    static NySettingsStore *const store = new NySettingsStore;
    return *store;
}

NySettingsStore::NySettingsStore()
    : m_path(NyDirectoryConfig::instance().settingsFile())
{
}

std::optional<QString> NySettingsStore::value(const QString &group, const QString &key)
{
    bool broken = false;
    {
        const QMutexLocker locker(&m_data);
        broken = refresh() == FileState::Broken;
    }
    if (broken)
        setBrokenFileAside();
    const QMutexLocker locker(&m_data);
    const Key wanted(group, key);
    for (const auto &[pendingKey, pending] : std::as_const(m_pending)) {
        if (pendingKey == wanted)
            return pending.text;
    }
    const auto stored = m_document.values.constFind(wanted);
    return stored == m_document.values.constEnd() ? std::nullopt : std::optional(*stored);
}

void NySettingsStore::setValue(const QString &group, const QString &key, const QString &text, bool quoted)
{
    const QMutexLocker locker(&m_data);
    const Key changed(group, key);
    m_pending.removeIf([&changed](const std::pair<Key, Value> &pending) { return pending.first == changed; });
    m_pending.append({changed, Value{text, quoted}});
}

bool NySettingsStore::hasPending()
{
    const QMutexLocker locker(&m_data);
    return !m_pending.isEmpty();
}

void NySettingsStore::reportUnusable(const QString &group, const QString &key, const QString &text)
{
    {
        const QMutexLocker locker(&m_data);
        const QString id = group + QLatin1Char('\n') + key + QLatin1Char('\n') + text;
        if (m_reported.contains(id))
            return;
        m_reported.insert(id);
    }
    qWarning().noquote() << "unusable value in" << m_path << "group" << group << "key" << key << "value" << text;
}

NySettingsStore::Hold NySettingsStore::lock()
{
    QElapsedTimer waited;
    waited.start();
    if (!m_holder.tryLock(LongestWaitMs)) {
        qWarning().noquote() << "settings are held by another thread for too long:" << m_path;
        return {};
    }
    if (m_depth++ > 0)
        return {true, m_lockFile && m_lockFile->isLocked()};

    if (!m_lockFile) {
        m_lockFile = std::make_unique<QLockFile>(m_path + QStringLiteral(".lock"));
        m_lockFile->setStaleLockTime(OwnerlessLockMs);
    }
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    for (;;) {
        if (m_lockFile->tryLock(0))
            return {true, true};
        if (m_lockFile->error() != QLockFile::LockFailedError) {
            qWarning().noquote() << "cannot make the lock file" << m_lockFile->fileName();
            return {true, false};
        }
        if (waited.hasExpired(LongestWaitMs)) {
            qint64 pid = 0;
            QString host;
            QString program;
            m_lockFile->getLockInfo(&pid, &host, &program);
            qWarning().noquote() << "settings are held by another process for too long:" << m_path << program << pid;
            return {true, false};
        }
        QThread::msleep(LockPollMs);
    }
}

void NySettingsStore::unlock(Hold hold)
{
    if (!hold.entered) {
        writePending();
        return;
    }
    if (m_depth == 1) {
        writePending();
        if (m_lockFile->isLocked())
            m_lockFile->unlock();
    }
    --m_depth;
    m_holder.unlock();
}

std::optional<NySettingsStore::Stamp> NySettingsStore::stampOf(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    constexpr qint64 second = 1'000'000'000;
    return Stamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec,
        status.st_ctim.tv_sec * second + status.st_ctim.tv_nsec};
}

/** Brings the document up to the file. Under m_data. */
NySettingsStore::FileState NySettingsStore::refresh()
{
    const std::optional<Stamp> stamp = stampOf(m_path);
    if (!stamp) {
        m_document = {};
        m_stamp.reset();
        return m_state = FileState::Missing;
    }
    if (m_stamp == stamp)
        return m_state;

    const bool wasUnreadable = m_state == FileState::Unreadable;
    m_document = {};
    m_stamp.reset();
    QFile file(m_path);
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly)) {
        if (!wasUnreadable)
            qWarning().noquote() << "cannot read the settings" << m_path << file.errorString();
        return m_state = FileState::Unreadable;
    }
    const qint64 nowNs = QDateTime::currentMSecsSinceEpoch() * 1'000'000;
    const QByteArray content = file.read(LargestFile + 1);
    if (content.size() > LargestFile)
        m_document.problem = QStringLiteral("larger than any settings");
    else
        parse(content, m_document);
    m_state = m_document.problem.isEmpty() ? FileState::Good : FileState::Broken;
    if (m_state == FileState::Broken)
        m_document.values.clear();
    if (qMax(stamp->modifiedNs, stamp->changedNs) < nowNs - SettledAfterNs && stampOf(m_path) == stamp)
        m_stamp = stamp;
    return m_state;
}

bool NySettingsStore::parse(QByteArray content, Document &document)
{
    const auto broken = [&document](const QString &problem) {
        document.problem = problem;
        return false;
    };
    if (content.contains('\0'))
        return broken(QStringLiteral("a NUL byte in it"));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString ignored = decoder(content);
    Q_UNUSED(ignored)
    if (decoder.hasError())
        return broken(QStringLiteral("bytes that are no UTF-8"));
    if (content.startsWith("\xef\xbb\xbf"))
        content.remove(0, 3);
    if (content.endsWith('\n'))
        content.chop(1);
    if (content.isEmpty())
        return true;

    QString group;
    bool inGroup = false;
    int number = 0;
    const QList<QByteArray> lines = content.split('\n');
    for (const QByteArray &text : lines) {
        ++number;
        const QByteArray trimmed = text.trimmed();
        Line line{text, group, {}};
        if (trimmed.startsWith('[')) {
            if (!trimmed.endsWith(']') || trimmed.size() < 3)
                return broken(QStringLiteral("line %1 is no group").arg(number));
            group = decodedName(trimmed.sliced(1, trimmed.size() - 2).trimmed());
            inGroup = true;
            line.group = group;
        } else if (!trimmed.isEmpty() && !trimmed.startsWith('#') && !trimmed.startsWith(';')) {
            const qsizetype equals = trimmed.indexOf('=');
            if (equals < 1 || !inGroup)
                return broken(QStringLiteral("line %1 is no value of a group").arg(number));
            line.key = decodedName(trimmed.first(equals).trimmed());
            const std::optional<QString> value = unquotedText(trimmed.sliced(equals + 1).trimmed());
            if (!value)
                return broken(QStringLiteral("line %1 has an unfinished text").arg(number));
            document.values.insert(Key(group, line.key), *value);
        }
        document.lines.append(line);
    }
    return true;
}

/** Puts the value into its line, which is made at the end of its group where there is none. */
void NySettingsStore::apply(Document &document, const Key &key, const Value &value)
{
    const Line line{encodedName(key.second) + '=' + (value.quoted ? quotedText(value.text) : value.text.toUtf8()), key.first, key.second};
    document.values.insert(key, value.text);
    qsizetype groupEnd = -1;
    for (qsizetype i = document.lines.size() - 1; i >= 0; --i) {
        const Line &present = document.lines.at(i);
        if (present.group != key.first)
            continue;
        if (present.key == key.second) {
            document.lines[i] = line;
            return;
        }
        if (groupEnd < 0 && !present.text.trimmed().isEmpty())
            groupEnd = i + 1;
    }
    if (groupEnd < 0) {
        if (!document.lines.isEmpty())
            document.lines.append(Line{});
        document.lines.append(Line{'[' + encodedName(key.first) + ']', key.first, {}});
        groupEnd = document.lines.size();
    }
    document.lines.insert(groupEnd, line);
}

void NySettingsStore::setBrokenFileAside()
{
    const Hold hold = lock();
    if (hold.locked) {
        const QMutexLocker locker(&m_data);
        // Another process may have done it in the meantime.
        m_stamp.reset();
        if (refresh() == FileState::Broken) {
            QString aside = m_path + QStringLiteral(".broken");
            for (int number = 2; number < 10 && QFileInfo::exists(aside); ++number)
                aside = m_path + QLatin1Char('.') + QString::number(number) + QStringLiteral(".broken");
            QFile::remove(aside);
            const bool moved = QFile::rename(m_path, aside);
            qWarning().noquote() << "broken settings:" << m_path << m_document.problem
                                 << (moved ? "set aside as" : "cannot be set aside as") << aside;
            m_document = {};
            m_state = moved ? FileState::Missing : FileState::Unreadable;
            m_stamp = moved ? std::nullopt : stampOf(m_path);
        }
    }
    unlock(hold);
}

void NySettingsStore::writePending()
{
    const QMutexLocker locker(&m_data);
    if (m_pending.isEmpty())
        return;
    const FileState state = refresh();
    if (state == FileState::Broken || state == FileState::Unreadable) {
        // Writing now would wipe out whatever the file holds.
        qWarning().noquote() << "settings are not saved, the file cannot be read:" << m_path;
        return;
    }
    Document changed = m_document;
    bool differs = false;
    for (const auto &[key, value] : std::as_const(m_pending)) {
        const auto present = changed.values.constFind(key);
        if (present != changed.values.constEnd() && *present == value.text)
            continue;
        apply(changed, key, value);
        differs = true;
    }
    if (!differs) {
        m_pending.clear();
        return;
    }
    QByteArray content;
    for (const Line &line : std::as_const(changed.lines))
        content += line.text + '\n';

    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QSaveFile file(m_path);
    bool written = file.open(QIODevice::WriteOnly);
    // commit() alone reports success after a buffered write that did not fit on the disk.
    if (written && (file.write(content) != content.size() || !file.flush() || file.error() != QFileDevice::NoError)) {
        file.cancelWriting();
        written = false;
    }
    if (!written || !file.commit()) {
        qWarning().noquote() << "settings are not saved:" << m_path << file.errorString();
        return;
    }
    m_pending.clear();
    m_document = changed;
    m_state = FileState::Good;
    m_stamp.reset();
}

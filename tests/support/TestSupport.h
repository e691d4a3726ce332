#pragma once

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMutex>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTest>

/** What the tests of several libraries need: files of the private surroundings of a test, and the lines that were logged. */
namespace TestSupport
{
/** Records all log lines, each after its level ("debug: ", "info: ", "warning: "), and passes them on. One at a time. */
class LogRecorder
{
public:
    LogRecorder()
    {
        const QMutexLocker locker(&mutex());
        lines().clear();
        previous() = qInstallMessageHandler(&LogRecorder::record);
    }
    ~LogRecorder() { qInstallMessageHandler(previous()); }
    Q_DISABLE_COPY_MOVE(LogRecorder)

    QStringList all() const
    {
        const QMutexLocker locker(&mutex());
        return lines();
    }
    QStringList containing(const QString &part) const { return all().filter(part); }
    bool has(const QString &line) const { return all().contains(line); }
    void clear()
    {
        const QMutexLocker locker(&mutex());
        lines().clear();
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        QString level;
        switch (type) {
        case QtDebugMsg:
            level = QStringLiteral("debug: ");
            break;
        case QtInfoMsg:
            level = QStringLiteral("info: ");
            break;
        case QtWarningMsg:
            level = QStringLiteral("warning: ");
            break;
        default:
            level = QStringLiteral("critical: ");
        }
        {
            const QMutexLocker locker(&mutex());
            lines().append(level + message);
        }
        if (previous())
            previous()(type, context, message);
    }
    static QMutex &mutex()
    {
        static QMutex theMutex;
        return theMutex;
    }
    static QStringList &lines()
    {
        static QStringList theLines;
        return theLines;
    }
    static QtMessageHandler &previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
};

inline QString configFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/VELMORA");
}

inline QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/VELMORA");
}

inline bool writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Writes the service's configuration with the given sections, where the next configuration object finds it. */
inline bool writeServiceConfig(const QByteArray &sections)
{
    return writeFile(configFolder() + QStringLiteral("/quilloservice.xml"),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<quilloservice>" + sections + "</quilloservice>\n");
}

/** The texts of the event log of the program with this executable name, oldest first. */
inline QStringList eventLog(const QString &program = QStringLiteral("quilloservice"))
{
    const QByteArray content = readFile(dataFolder() + QStringLiteral("/log/") + program + QStringLiteral("-events.log"));
    QStringList texts;
    const QList<QByteArray> records = content.split('\n');
    for (const QByteArray &record : records) {
        if (const qsizetype tab = record.indexOf('\t'); tab >= 0)
            texts.append(QString::fromUtf8(record.mid(tab + 1)));
    }
    return texts;
}

/** Writes a small JPEG, different for every `seed`. */
inline bool writePhoto(const QString &path, int seed)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QImage image(48, 32, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb((x * 5 + seed * 37) % 256, (y * 7 + seed * 11) % 256, (x * y + seed * 101) % 256));
    }
    return image.save(path, "JPEG", 80);
}
}

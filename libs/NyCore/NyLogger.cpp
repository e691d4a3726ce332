#include "NyLogger.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QObject>
#include <QtCore/QVariant>

#include "NyGeneralSettings.h"
#include "NyRotatingFile.h"

namespace
{

/** Belongs to the action that it writes about. */
class ActionLogger : public QObject
{
    Q_OBJECT

public:
    explicit ActionLogger(QObject *action)
        : QObject(action)
    {
    }

public Q_SLOTS:
    void actionTriggered() { qDebug() << "action used:" << parent()->property("text").toString(); }
};

} // namespace

class NyLogger::Private
{
public:
    QMutex mutex;
    NyRotatingFile file;
};

NyLogger::NyLogger()
    : d(std::make_unique<Private>())
{
}

NyLogger::~NyLogger() = default;

void NyLogger::logQuilloService(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escaped.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    escaped.replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    const QString path = NyGeneralSettings::instance().eventLogFile().absoluteFilePath();
    const QMutexLocker locker(&d->mutex);
    const QString time
        = QDateTime::currentDateTime().toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc()).toString(Qt::ISODateWithMs);
    d->file.setPath(path);
    d->file.append((time + QLatin1Char('\t') + escaped + QLatin1Char('\n')).toUtf8());
}

void NyLogger::connectAction(QObject *action)
{
    auto *const logger = new ActionLogger(action);
    if (!QObject::connect(action, SIGNAL(triggered(bool)), logger, SLOT(actionTriggered())))
        qWarning() << "no action to log:" << action;
}

void NyLogger::closeFile()
{
    const QMutexLocker locker(&d->mutex);
    d->file.close();
}

#include "NyLogger.moc"

#include "NyLogger.h"

#include <QtCore/QDateTime>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include "NyGeneralSettings.h"
#include "NyRotatingFile.h"

class NyLogger::Private {
public:
    QMutex mutex;
    NyRotatingFile file;
};

NyLogger::NyLogger()
    : d(std::make_unique<Private>())
{
}

NyLogger::~NyLogger() = default;

void NyLogger::logQuilloService(const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escaped.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    escaped.replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    const QString path = NyGeneralSettings::instance().eventLogFile().absoluteFilePath();
    const QMutexLocker locker(&d->mutex);
    const QString time = QDateTime::currentDateTime().toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc()).toString(Qt::ISODateWithMs);
    d->file.setPath(path);
    d->file.append((time + QLatin1Char('\t') + escaped + QLatin1Char('\n')).toUtf8());
}

void NyLogger::closeFile()
{
    const QMutexLocker locker(&d->mutex);
    d->file.close();
}

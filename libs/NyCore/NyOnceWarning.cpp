#include "NyOnceWarning.h"

#include <QtCore/QDebug>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QSet>

void NyOnceWarning::warn(const QString &text)
{
    static QMutex mutex;
    static QSet<QString> known;
    bool isLast = false;
    {
        const QMutexLocker locker(&mutex);
        if (known.contains(text) || known.size() > MostTexts)
            return;
        isLast = known.size() == MostTexts;
        known.insert(text);
    }
    qWarning().noquote() << text;
    if (isLast)
        qWarning() << "further warnings of what cannot be read are not logged in this run";
}

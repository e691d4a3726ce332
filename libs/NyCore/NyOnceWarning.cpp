#include "NyOnceWarning.h"

#include <QtCore/QDebug>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QSet>

namespace
{

struct Known
{
    QMutex mutex;
    QSet<QString> texts;
};

} // namespace

void NyOnceWarning::warn(const QString &text)
{
    // Never destroyed: a search may still run while the process ends.
    static Known *const known = new Known;
    bool isLast = false;
    {
        const QMutexLocker locker(&known->mutex);
        if (known->texts.contains(text) || known->texts.size() > MostTexts)
            return;
        isLast = known->texts.size() == MostTexts;
        known->texts.insert(text);
    }
    qWarning().noquote() << text;
    if (isLast)
        qWarning() << "further warnings of what cannot be read are not logged in this run";
}

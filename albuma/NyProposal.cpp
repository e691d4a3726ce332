#include "NyProposal.h"

#include <QLocale>
#include <QStringList>

#include <NyTranslation.h>

using namespace Qt::Literals::StringLiterals;

QString NyProposal::extent() const
{
    const QLocale locale = NyTranslation::locale();
    QStringList parts;
    if (photoCount > 0)
        parts.append(photoCount == 1 ? tr("1 Foto") : tr("%1 Fotos").arg(locale.toString(photoCount)));
    if (pageCount > 0)
        parts.append(pageCount == 1 ? tr("1 Seite") : tr("%1 Seiten").arg(locale.toString(pageCount)));
    return parts.join(u" · "_s);
}

QString NyProposal::problem() const
{
    switch (state) {
    case State::NoDescription:
        return tr("Die Beschreibung fehlt oder ist beschädigt.");
    case State::NoProject:
        return tr("Die Projektdatei fehlt.");
    case State::Complete:
        break;
    }
    return {};
}

#include "NyPixmapButton.h"

#include "NyGUIWidgetsConfig.h"

NyPixmapButton::NyPixmapButton(QWidget *parent, const QString &iconId)
    : QToolButton(parent)
{
    setAutoRaise(true);
    setIcon(NyGUIWidgetsConfig::instance().loadIconById(iconId));
}

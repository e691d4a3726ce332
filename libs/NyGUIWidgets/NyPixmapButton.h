#pragma once

#include "nyguiwidgets_export.h"

#include <QToolButton>

/** A button that is nothing but an icon; its frame shows only under the pointer. */
class NYGUIWIDGETS_EXPORT NyPixmapButton : public QToolButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyPixmapButton)

public:
    /** `iconId` as NyGUIWidgetsConfig::loadIconById() knows it. */
    NyPixmapButton(QWidget *parent, const QString &iconId);
};

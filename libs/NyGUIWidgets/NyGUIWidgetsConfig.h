#pragma once

#include <NySingleton.h>

#include "nyguiwidgets_export.h"

#include <QIcon>
#include <QString>

/** What the family's windows share: its icons. Main thread. */
class NYGUIWIDGETS_EXPORT NyGUIWidgetsConfig : public NySingleton<NyGUIWidgetsConfig>
{
public:
    NyGUIWidgetsConfig();
    ~NyGUIWidgetsConfig() override;

    /** The built-in icon with that id, sharp at every size; null, with a line in the log, when there is none. */
    QIcon loadIconById(const QString &id) const;
};

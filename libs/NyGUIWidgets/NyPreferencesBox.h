#pragma once

#include "NyPreferencesItem.h"
#include "nyguiwidgets_export.h"

#include <QGroupBox>

/** An item of the settings window that is a titled box of controls. Whoever derives from it makes the controls. */
class NYGUIWIDGETS_EXPORT NyPreferencesBox : public QGroupBox, public NyPreferencesItem
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyPreferencesBox)

public:
    NyPreferencesBox(QWidget *parent, const QString &title, NyPreferencesType type);
    ~NyPreferencesBox() override;

    NyPreferencesType type() const override;
    /** True here: any state of plain controls may be left. */
    bool checkLeaveCondition() override;
    /** Fills the controls from the settings again. */
    void revertChanges() override;

    /** Whether the settings window shows stackItemWidget() on a page of its own instead of the box among others; false here. */
    virtual bool showSpecialWidget() const;
    /** The widget that stands for the item in the window's stack of pages; the box itself here. Never null. */
    virtual QWidget *stackItemWidget();
    /**
     * The item as a page of the welcome wizard, which has titles of its own: the box without frame, title and parent here. The
     * title stays its accessible name. From now on it belongs to the caller.
     */
    virtual QWidget *extractWidgetForWelcomeWizard();

private:
    NyPreferencesType m_type;
};

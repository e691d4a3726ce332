#include "NyPreferencesBox.h"

NyPreferencesBox::NyPreferencesBox(QWidget *parent, const QString &title, NyPreferencesType type)
    : QGroupBox(title, parent)
    , m_type(type)
{
}

NyPreferencesBox::~NyPreferencesBox() = default;

NyPreferencesType NyPreferencesBox::type() const
{
    return m_type;
}

bool NyPreferencesBox::checkLeaveCondition()
{
    return true;
}

void NyPreferencesBox::revertChanges()
{
    readFromConfig();
}

bool NyPreferencesBox::showSpecialWidget() const
{
    return false;
}

QWidget *NyPreferencesBox::stackItemWidget()
{
    return this;
}

QWidget *NyPreferencesBox::extractWidgetForWelcomeWizard()
{
    if (accessibleName().isEmpty())
        setAccessibleName(title());
    setParent(nullptr);
    setTitle(QString());
    setFlat(true);
    return this;
}

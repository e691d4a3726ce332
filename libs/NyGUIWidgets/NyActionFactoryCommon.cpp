#include "NyActionFactoryCommon.h"

#include "NyGUIWidgetsConfig.h"

#include <QAction>

namespace
{
struct ActionLook
{
    NyActionType type;
    const char *text;
    const char *iconId;
};

constexpr ActionLook LOOKS[] = {
    {NyActionType::ShowServiceInformation, QT_TRANSLATE_NOOP("NyActionFactoryCommon", "Informationen zum Dienst"), "ico_info"},
    {NyActionType::LaunchMainApplication, QT_TRANSLATE_NOOP("NyActionFactoryCommon", "Programm starten"), "ico_albuma"},
    {NyActionType::QuitService, QT_TRANSLATE_NOOP("NyActionFactoryCommon", "Beenden"), "ico_quit"},
    {NyActionType::ShowLastProposal, QT_TRANSLATE_NOOP("NyActionFactoryCommon", "Letzten Vorschlag anzeigen"), "ico_show_last_proposal"},
};

const ActionLook *lookOf(NyActionType type)
{
    for (const ActionLook &look : LOOKS) {
        if (look.type == type)
            return &look;
    }
    return nullptr;
}
}

NyActionFactoryCommon::NyActionFactoryCommon() = default;

NyActionFactoryCommon::~NyActionFactoryCommon() = default;

bool NyActionFactoryCommon::makes(NyActionType type)
{
    return lookOf(type) != nullptr;
}

QAction *NyActionFactoryCommon::createAndConfigureAction(NyActionType type)
{
    const ActionLook *look = lookOf(type);
    if (!look)
        return nullptr;
    return new QAction(NyGUIWidgetsConfig::instance().loadIconById(QString::fromLatin1(look->iconId)), tr(look->text), nullptr);
}

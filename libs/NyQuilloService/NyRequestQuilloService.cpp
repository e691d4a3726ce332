#include "NyRequestQuilloService.h"

NyRequestQuilloService::NyRequestQuilloService() = default;

NyRequestQuilloService::~NyRequestQuilloService() = default;

bool NyRequestQuilloService::askDeleteBookProposal(const QString &proposalName) const
{
    const QString quotedName = proposalName.isEmpty() ? QString() : QStringLiteral("„%1“").arg(proposalName);
    // Without a name two blanks meet.
    const QString question = tr("Möchten Sie den Buchvorschlag %1 wirklich löschen?").arg(quotedName).simplified();
    return yesNoQuestion(attentionString(), question, QString(), false, QString(), QString());
}

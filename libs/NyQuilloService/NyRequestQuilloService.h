#pragma once

#include "nyquilloservice_export.h"

#include <NyRequest.h>
#include <NySingleton.h>

/** The questions about proposals, in whatever program of the family asks them. Main thread. */
class NYQUILLOSERVICE_EXPORT NyRequestQuilloService : public NyRequest, public NySingleton<NyRequestQuilloService>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyRequestQuilloService)

public:
    NyRequestQuilloService();
    ~NyRequestQuilloService() override;

    /** Blocks until the user has answered; true for yes. An empty name leaves the name out of the question. */
    bool askDeleteBookProposal(const QString &proposalName) const;
};

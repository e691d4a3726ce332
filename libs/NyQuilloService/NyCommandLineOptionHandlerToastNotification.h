#pragma once

#include "nyquilloservice_export.h"

#include <NyCommandLineOptionHandlerAbstract.h>

/** Selects the mode in which a notification's answer is awaited. Main thread. */
class NYQUILLOSERVICE_EXPORT NyCommandLineOptionHandlerToastNotification : public NyCommandLineOptionHandlerAbstract
{
public:
    ~NyCommandLineOptionHandlerToastNotification() override;

    using NyCommandLineOptionHandlerAbstract::optionUsed;
    void optionUsed(const QString &value) override;
};

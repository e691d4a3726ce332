#pragma once

#include "NyQuilloServiceSettings.h"
#include "nyquilloservice_export.h"

#include <NyCommandLineOptionHandlerAbstract.h>

/** Turns the value of the option "serviceMode" into the mode of the run. Main thread. */
class NYQUILLOSERVICE_EXPORT NyCommandLineOptionHandlerServiceMode : public NyCommandLineOptionHandlerAbstract
{
public:
    ~NyCommandLineOptionHandlerServiceMode() override;

    /** The mode for `value`, by its first letter in either case; `value` is not empty. Unknown letters mean the normal mode. */
    NyQuilloServiceMode mode(const QString &value) const;

    using NyCommandLineOptionHandlerAbstract::optionUsed;
    void optionUsed(const QString &value) override;
};

#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "nycore_export.h"

/** What happens when an option is used on the command line. */
class NYCORE_EXPORT NyCommandLineOptionHandlerAbstract
{
public:
    virtual ~NyCommandLineOptionHandlerAbstract();

    /** @p value is the option's last value, null for a flag. */
    virtual void optionUsed(const QString &value) = 0;
    /** Called once for an option that was used, with all its values in order; passes the last one on. */
    virtual void optionUsed(const QString &name, QStringList values);
};

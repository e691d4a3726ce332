#include "NyCommandLineOptionHandlerAbstract.h"

NyCommandLineOptionHandlerAbstract::~NyCommandLineOptionHandlerAbstract() = default;

void NyCommandLineOptionHandlerAbstract::optionUsed(const QString &, QStringList values)
{
    optionUsed(values.isEmpty() ? QString() : values.constLast());
}

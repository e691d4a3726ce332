#pragma once

#include <QtCore/QList>
#include <QtCore/QMutex>

#include "NyInitializerAbstract.h"
#include "NySingleton.h"
#include "nycore_export.h"

/** The program-wide list of initializers. It does not own them. */
class NYCORE_EXPORT NyInitializer : public NySingleton<NyInitializer>
{
public:
    NyInitializer();
    ~NyInitializer() override;

    /** Adds an initializer behind the present ones; one that is there already stays where it is. Thread-safe. */
    void registerInitializer(NyInitializerAbstract *initializer);

    void addCommandLineOptionHandlers(NyCommandLineParserAbstract *parser);
    /** In the order of registration. */
    void setup(NyInitializerOption option);
    /** In the reverse order of registration. */
    void teardown();

private:
    QList<NyInitializerAbstract *> initializers() const;

    mutable QMutex m_mutex;
    QList<NyInitializerAbstract *> m_initializers;
};

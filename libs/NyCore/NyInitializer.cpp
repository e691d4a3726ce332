#include "NyInitializer.h"

#include <QtCore/QMutexLocker>

NyInitializer::NyInitializer() = default;

NyInitializer::~NyInitializer() = default;

void NyInitializer::registerInitializer(NyInitializerAbstract *initializer)
{
    const QMutexLocker locker(&m_mutex);
    if (initializer && !m_initializers.contains(initializer))
        m_initializers.append(initializer);
}

void NyInitializer::addCommandLineOptionHandlers(NyCommandLineParserAbstract *parser)
{
    const QList<NyInitializerAbstract *> all = initializers();
    for (NyInitializerAbstract *initializer : all)
        initializer->addCommandLineOptionHandlers(parser);
}

void NyInitializer::setup(NyInitializerOption option)
{
    const QList<NyInitializerAbstract *> all = initializers();
    for (NyInitializerAbstract *initializer : all)
        initializer->setup(option);
}

void NyInitializer::teardown()
{
    const QList<NyInitializerAbstract *> all = initializers();
    for (auto it = all.crbegin(); it != all.crend(); ++it)
        (*it)->teardown();
}

QList<NyInitializerAbstract *> NyInitializer::initializers() const
{
    const QMutexLocker locker(&m_mutex);
    return m_initializers;
}

#pragma once

#include <atomic>

#include <NyEnumWrapper.h>
#include <NyProgramConfig.h>
#include <NySingleton.h>

class Q_DECL_EXPORT NyProbeSingleton : public NySingleton<NyProbeSingleton>
{
public:
    NyProbeSingleton() { ++constructions; }
    void setupInstance() override { ++setups; }

    static inline std::atomic<int> constructions{0};
    static inline std::atomic<int> setups{0};
};

enum NyProbeEnum : int { ProbeNothing = 0, ProbeOne = 1, ProbeTwo = 2 };

class Q_DECL_EXPORT NyProbeWrapper : public NyEnumWrapper<NyProbeEnum>
{
public:
    using NyEnumWrapper<NyProbeEnum>::NyEnumWrapper;
    void fillTable(NyEnumToStringTable<NyProbeEnum> *table) const override
    {
        table->insert(QStringLiteral("one"), ProbeOne);
        ++fillings;
    }

    static inline std::atomic<int> fillings{0};
};

/** What another library of the process sees. */
Q_DECL_EXPORT NyProbeSingleton *probeSingletonOfLibrary();
Q_DECL_EXPORT NyProgramConfig *programConfigOfLibrary();
Q_DECL_EXPORT const NyEnumToStringTable<NyProbeEnum> *probeTableOfLibrary();

#include <QTest>

#include <thread>
#include <vector>

#include <NyProgramConfig.h>
#include <NySingleton.h>

#include "NyUnificationProbe.h"

class tst_NySingleton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneInstanceForAllThreads();
    void oneInstanceForAllLibraries();
    void oneTableForAllLibraries();
    void freshObjectsBesideTheInstance();
};

void tst_NySingleton::oneInstanceForAllThreads()
{
    std::vector<NyProbeSingleton *> seen(8, nullptr);
    std::vector<std::thread> threads;
    for (NyProbeSingleton *&slot : seen)
        threads.emplace_back([&slot] { slot = &NyProbeSingleton::instance(); });
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(seen.front());
    for (NyProbeSingleton *object : seen)
        QCOMPARE(object, seen.front());
    QCOMPARE(NyProbeSingleton::constructions.load(), 1);
    QCOMPARE(NyProbeSingleton::setups.load(), 1);
}

void tst_NySingleton::oneInstanceForAllLibraries()
{
    QCOMPARE(probeSingletonOfLibrary(), &NyProbeSingleton::instance());
    QCOMPARE(NyProbeSingleton::constructions.load(), 1);
    QCOMPARE(programConfigOfLibrary(), &NyProgramConfig::instance());
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QCOMPARE(programConfigOfLibrary()->programID(), NyProgramID::QuilloService);
}

void tst_NySingleton::oneTableForAllLibraries()
{
    QCOMPARE(probeTableOfLibrary(), NyProbeWrapper().enumToStringTable());
    QCOMPARE(NyProbeWrapper::fillings.load(), 1);
}

void tst_NySingleton::freshObjectsBesideTheInstance()
{
    NyProgramConfig own;
    QVERIFY(&own != &NyProgramConfig::instance());
    QCOMPARE(own.programID(), NyProgramID::MainProgram);
}

QTEST_APPLESS_MAIN(tst_NySingleton)
#include "tst_NySingleton.moc"

#include <QTest>

#include <NyCommandLineParserAbstract.h>
#include <NyInitializer.h>
#include <NyKeyAccount.h>
#include <NyProgramConfig.h>
#include <NyVersionConfig.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

QStringList calls;

class Part : public NyInitializerAbstract
{
public:
    explicit Part(const QString &name)
        : m_name(name)
    {
    }
    void addCommandLineOptionHandlers(NyCommandLineParserAbstract *parser) override
    {
        calls.append(m_name + (parser ? u" options"_s : u" no parser"_s));
    }
    void setup(NyInitializerOption option) override { calls.append(m_name + u" setup %1"_s.arg(static_cast<int>(option))); }
    void teardown() override { calls.append(m_name + u" teardown"_s); }

private:
    QString m_name;
};

/** Registers itself before main, as the libraries' parts do. */
class SelfRegistering : public Part
{
public:
    SelfRegistering()
        : Part(u"static"_s)
    {
        NyInitializer::instance().registerInitializer(this);
    }
};

SelfRegistering me;

} // namespace

class tst_NyInitializer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { calls.clear(); }
    void registeredAtLoad();
    void order();
    void registeredTwice();
    void empty();
    void programNames();
    void versions();
};

void tst_NyInitializer::registeredAtLoad()
{
    NyInitializer::instance().setup(NyInitializerOption::BackgroundService);
    QCOMPARE(calls, QStringList{u"static setup 3"_s});
}

void tst_NyInitializer::order()
{
    NyInitializer initializer;
    Part a(u"a"_s);
    Part b(u"b"_s);
    initializer.registerInitializer(&a);
    initializer.registerInitializer(&b);
    NyCommandLineParserAbstract parser;
    initializer.addCommandLineOptionHandlers(&parser);
    initializer.setup(NyInitializerOption::Builder);
    initializer.teardown();
    QCOMPARE(calls, QStringList({u"a options"_s, u"b options"_s, u"a setup 1"_s, u"b setup 1"_s, u"b teardown"_s, u"a teardown"_s}));
}

void tst_NyInitializer::registeredTwice()
{
    NyInitializer initializer;
    Part a(u"a"_s);
    initializer.registerInitializer(&a);
    initializer.registerInitializer(&a);
    initializer.registerInitializer(nullptr);
    initializer.setup(NyInitializerOption::Test);
    QCOMPARE(calls, QStringList{u"a setup 2"_s});
}

void tst_NyInitializer::empty()
{
    NyInitializer initializer;
    initializer.addCommandLineOptionHandlers(nullptr);
    initializer.setup(NyInitializerOption::MainWindow);
    initializer.teardown();
    QVERIFY(calls.isEmpty());
}

void tst_NyInitializer::programNames()
{
    NyProgramConfig config;
    QCOMPARE(config.programID(), NyProgramID::MainProgram);
    config.setProgramID(NyProgramID::QuilloService);
    QCOMPARE(static_cast<int>(config.programID()), 8);
    QCOMPARE(config.programName(NyProgramID::MainProgram), u"VELMORA ALBUMA"_s);
    QCOMPARE(config.programName(NyProgramID::QuilloService), u"quilloservice"_s);
    QCOMPARE(config.commandName(NyProgramID::MainProgram), u"velmora-albuma"_s);
    QCOMPARE(config.commandName(NyProgramID::QuilloService), u"quilloservice"_s);
    QCOMPARE(config.programName(static_cast<NyProgramID>(77)), QString());
}

void tst_NyInitializer::versions()
{
    const NyVersionConfig version;
    QVERIFY(QRegularExpression(u"^\\d+\\.\\d+\\.\\d+$"_s).match(version.clientVersion()).hasMatch());
    QVERIFY(version.versionString().startsWith(version.clientVersion()));
    QVERIFY(QRegularExpression(u"^([0-9a-f]{7,}|unknown)$"_s).match(version.gitCommitStringShort()).hasMatch());
}

QTEST_GUILESS_MAIN(tst_NyInitializer)
#include "tst_NyInitializer.moc"

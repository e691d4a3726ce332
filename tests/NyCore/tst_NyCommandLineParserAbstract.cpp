#include <QTest>

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>

#include <NyCommandLineOptionHandlerAbstract.h>
#include <NyCommandLineParserAbstract.h>
#include <NyVersionConfig.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

void say(const QString &text)
{
    std::fputs(text.toUtf8().append('\n').constData(), stdout);
}

class Handler : public NyCommandLineOptionHandlerAbstract
{
public:
    explicit Handler(const QString &name)
        : m_name(name)
    {
    }
    ~Handler() override { say(u"gone "_s + m_name); }
    using NyCommandLineOptionHandlerAbstract::optionUsed;
    void optionUsed(const QString &value) override { say(m_name + u'=' + (value.isNull() ? u"(null)"_s : value)); }

private:
    QString m_name;
};

class ListHandler : public NyCommandLineOptionHandlerAbstract
{
public:
    using NyCommandLineOptionHandlerAbstract::optionUsed;
    void optionUsed(const QString &) override { say(u"not to be called"_s); }
    void optionUsed(const QString &name, QStringList values) override { say(name + u": "_s + values.join(u'|')); }
};

class Parser : public NyCommandLineParserAbstract
{
public:
    Parser()
    {
        setApplicationDescription(u"A program for tests."_s);
        addOption(CommandLineOptionType::OptionWithValue, new Handler(u"mode"_s), {u"serviceMode"_s}, u"The mode."_s, u"mode"_s, u"n"_s);
        addOption(CommandLineOptionType::Flag, {u"Embedding"_s}, u"Nothing."_s, QString(), QString());
        addOption(CommandLineOptionType::Flag, new Handler(u"toast"_s), {u"ToastActivated"_s}, u"A toast."_s, QString(), QString());
        addOption(CommandLineOptionType::OptionWithValue, new ListHandler, {u"list"_s, u"l"_s}, u"A list."_s, u"entry"_s, QString());
        addOption(CommandLineOptionType::OptionWithValue, {u"plain"_s}, u"No handler."_s, u"text"_s, u"none"_s);
        addPositionalArgument(u"file"_s, u"A file."_s);
    }
    QStringList evaluateCommandLine() override
    {
        say(u"evaluated"_s);
        return NyCommandLineParserAbstract::evaluateCommandLine();
    }
};

int runChild()
{
    int result = 0;
    {
        Parser parser;
        const QStringList files = parser.processCommandLine();
        for (const QString &file : files)
            say(u"file "_s + file);
        say(u"embedding %1 plain %2 mode %3"_s.arg(parser.isSet(u"Embedding"_s))
                .arg(parser.value(u"plain"_s), parser.value(u"serviceMode"_s)));
        result = parser.positionalArguments() == files ? 0 : 9;
    }
    std::fflush(stdout);
    return result;
}

struct Result
{
    int exitCode = -1;
    QStringList output;
    QString errors;
};

Result run(const QStringList &arguments)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), arguments);
    // The child tells itself from the test by this variable, so that its command line stays untouched.
    if (!child.waitForFinished(30000) || child.exitStatus() != QProcess::NormalExit)
        return {};
    Result result;
    result.exitCode = child.exitCode();
    result.output = QString::fromUtf8(child.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    result.errors = QString::fromUtf8(child.readAllStandardError());
    return result;
}

} // namespace

class tst_NyCommandLineParserAbstract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void handlers_data();
    void handlers();
    void help_data();
    void help();
    void version();
    void mistakes_data();
    void mistakes();
    void declarationMistakes();
};

void tst_NyCommandLineParserAbstract::handlers_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("said");

    const QString nothing = u"embedding 0 plain none mode n"_s;
    QTest::newRow("nothing") << QStringList() << QStringList{u"evaluated"_s, nothing};
    for (const QStringList &form :
        {QStringList{u"--serviceMode"_s, u"u"_s}, {u"--serviceMode=u"_s}, {u"-serviceMode"_s, u"u"_s}, {u"-serviceMode=u"_s}}) {
        QTest::newRow(form.join(u' ').toUtf8().constData())
            << form << QStringList{u"mode=u"_s, u"evaluated"_s, u"embedding 0 plain none mode u"_s};
    }
    QTest::newRow("flag") << QStringList{u"-ToastActivated"_s} << QStringList{u"toast=(null)"_s, u"evaluated"_s, nothing};
    QTest::newRow("flag without handler") << QStringList{u"-Embedding"_s}
                                          << QStringList{u"evaluated"_s, u"embedding 1 plain none mode n"_s};
    QTest::newRow("order of the line") << QStringList{u"--ToastActivated"_s, u"--serviceMode"_s, u"i"_s}
                                       << QStringList{u"toast=(null)"_s, u"mode=i"_s, u"evaluated"_s, u"embedding 0 plain none mode i"_s};
    QTest::newRow("other order") << QStringList{u"--serviceMode"_s, u"i"_s, u"--ToastActivated"_s}
                                 << QStringList{u"mode=i"_s, u"toast=(null)"_s, u"evaluated"_s, u"embedding 0 plain none mode i"_s};
    QTest::newRow("last one counts") << QStringList{u"--serviceMode"_s, u"i"_s, u"--ToastActivated"_s, u"--serviceMode"_s, u"u"_s}
                                     << QStringList{u"toast=(null)"_s, u"mode=u"_s, u"evaluated"_s, u"embedding 0 plain none mode u"_s};
    QTest::newRow("empty value with =") << QStringList{u"--serviceMode="_s} << QStringList{u"mode=n"_s, u"evaluated"_s, nothing};
    QTest::newRow("empty value behind a blank")
        << QStringList{u"--serviceMode"_s, u""_s} << QStringList{u"mode=n"_s, u"evaluated"_s, nothing};
    QTest::newRow("no value at the end") << QStringList{u"--serviceMode"_s} << QStringList{u"mode=n"_s, u"evaluated"_s, nothing};
    QTest::newRow("no value at the end, one dash") << QStringList{u"-serviceMode"_s} << QStringList{u"mode=n"_s, u"evaluated"_s, nothing};
    QTest::newRow("value that looks like the option")
        << QStringList{u"--plain"_s, u"--serviceMode"_s} << QStringList{u"evaluated"_s, u"embedding 0 plain --serviceMode mode n"_s};
    QTest::newRow("blank in a value") << QStringList{u"--serviceMode"_s, u" i "_s}
                                      << QStringList{u"mode= i "_s, u"evaluated"_s, u"embedding 0 plain none mode  i "_s};
    QTest::newRow("several values") << QStringList{u"--list=a"_s, u"-l"_s, u"b=c"_s, u"--list"_s, u"\u00e4"_s}
                                    << QStringList{u"list: a|b=c|\u00e4"_s, u"evaluated"_s, nothing};
    QTest::newRow("files") << QStringList{u"a b.nqp"_s, u"--plain"_s, u"x"_s, u"--"_s, u"--serviceMode"_s}
                           << QStringList{u"evaluated"_s, u"file a b.nqp"_s, u"file --serviceMode"_s, u"embedding 0 plain x mode n"_s};
}

void tst_NyCommandLineParserAbstract::handlers()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, said);
    const Result result = run(arguments);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors, QString());
    // The parser owns its handlers.
    QCOMPARE(result.output, said + QStringList({u"gone mode"_s, u"gone toast"_s}));
}

void tst_NyCommandLineParserAbstract::help_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("long") << QStringList{u"--help"_s};
    QTest::newRow("short") << QStringList{u"-h"_s};
    QTest::newRow("one dash") << QStringList{u"-help"_s};
    QTest::newRow("beside a mode") << QStringList{u"--serviceMode"_s, u"i"_s, u"--help"_s};
    QTest::newRow("beside a mistake") << QStringList{u"--help"_s, u"--nosuchthing"_s};
}

void tst_NyCommandLineParserAbstract::help()
{
    QFETCH(QStringList, arguments);
    const Result result = run(arguments);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors, QString());
    const QString text = result.output.join(u'\n');
    QVERIFY2(text.contains(u"A program for tests."_s), qPrintable(text));
    QVERIFY(text.contains(u"--serviceMode <mode>"_s));
    QVERIFY(text.contains(u"--version"_s));
    QVERIFY(text.contains(u"file"_s));
    // No handler acted.
    QVERIFY(!text.contains(u"mode=i"_s));
}

void tst_NyCommandLineParserAbstract::version()
{
    const Result result = run({u"--version"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output, QStringList{u"tst_NyCommandLineParserAbstract "_s + NyVersionConfig::instance().versionString()});
}

void tst_NyCommandLineParserAbstract::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown") << QStringList{u"--nosuchthing"_s} << u"nosuchthing"_s;
    QTest::newRow("unknown beside known") << QStringList{u"--serviceMode"_s, u"i"_s, u"--nosuchthing"_s} << u"nosuchthing"_s;
    QTest::newRow("other case") << QStringList{u"--servicemode"_s, u"i"_s} << u"servicemode"_s;
    QTest::newRow("value for a flag") << QStringList{u"--Embedding=1"_s} << u"Embedding"_s;
    QTest::newRow("no value and no default") << QStringList{u"--list"_s} << u"list"_s;
}

void tst_NyCommandLineParserAbstract::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, word);
    const Result result = run(arguments);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.output, QStringList());
    QVERIFY2(result.errors.startsWith(u"tst_NyCommandLineParserAbstract: "_s) && result.errors.contains(word), qPrintable(result.errors));
}

void tst_NyCommandLineParserAbstract::declarationMistakes()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    NyCommandLineParserAbstract parser;
    QTest::ignoreMessage(QtWarningMsg, "command line option without a name: \"text\"");
    parser.addOption(CommandLineOptionType::Flag, {}, u"text"_s, QString(), QString());
    parser.addOption(CommandLineOptionType::Flag, {u"twice"_s}, u"text"_s, QString(), QString());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"already having an option named \"twice\""_s));
    QTest::ignoreMessage(QtWarningMsg, "command line option declared twice: \"twice\"");
    parser.addOption(CommandLineOptionType::Flag, {u"twice"_s}, u"text"_s, QString(), QString());
    QCOMPARE(parser.value(u"unknown"_s), QString());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsSet("NY_TEST_CHILD"))
        return runChild();
    qputenv("NY_TEST_CHILD", "1");
    tst_NyCommandLineParserAbstract test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyCommandLineParserAbstract.moc"

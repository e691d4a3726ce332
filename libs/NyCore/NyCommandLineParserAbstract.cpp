#include "NyCommandLineParserAbstract.h"

#include <cstdio>
#include <cstdlib>

#include <QtCore/QCommandLineOption>
#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>

#include "NyCommandLineOptionHandlerAbstract.h"
#include "NyVersionConfig.h"

namespace
{

const QStringList helpNames{QStringLiteral("help"), QStringLiteral("h")};
const QStringList versionNames{QStringLiteral("version"), QStringLiteral("v")};

[[noreturn]] void endProcess(std::FILE *stream, const QString &text, int exitCode)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
    std::exit(exitCode);
}

QString programFileName()
{
    const QStringList arguments = QCoreApplication::arguments();
    return arguments.isEmpty() ? QString() : QFileInfo(arguments.constFirst()).fileName();
}

} // namespace

NyCommandLineParserAbstract::NyCommandLineParserAbstract()
{
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    m_parser.addOption(QCommandLineOption(helpNames, QCoreApplication::translate("NyCommandLineParserAbstract", "Zeigt diese Hilfe an.")));
    m_parser.addOption(
        QCommandLineOption(versionNames, QCoreApplication::translate("NyCommandLineParserAbstract", "Zeigt die Version an.")));
}

NyCommandLineParserAbstract::~NyCommandLineParserAbstract() = default;

QStringList NyCommandLineParserAbstract::processCommandLine()
{
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.isEmpty())
        return evaluateCommandLine();

    const bool understood = m_parser.parse(completedArguments(arguments));
    // Help is given even beside an option that is not known: who asks for help may have mistyped one.
    if (m_parser.isSet(helpNames.constFirst()))
        endProcess(stdout, m_parser.helpText(), EXIT_SUCCESS);
    if (!understood)
        endProcess(stderr, programFileName() + QStringLiteral(": ") + m_parser.errorText() + QLatin1Char('\n'), EXIT_FAILURE);
    if (m_parser.isSet(versionNames.constFirst())) {
        endProcess(
            stdout, programFileName() + QLatin1Char(' ') + NyVersionConfig::instance().versionString() + QLatin1Char('\n'), EXIT_SUCCESS);
    }

    QList<Option *> used;
    const QStringList usedNames = m_parser.optionNames();
    for (const QString &name : usedNames) {
        Option *option = optionOf(name);
        if (!option)
            continue;
        used.removeOne(option);
        used.append(option);
    }
    for (const Option *option : std::as_const(used)) {
        if (option->handler)
            option->handler->optionUsed(option->names.constFirst(), valuesOf(*option));
    }
    return evaluateCommandLine();
}

QStringList NyCommandLineParserAbstract::evaluateCommandLine()
{
    return m_parser.positionalArguments();
}

void NyCommandLineParserAbstract::addOption(CommandLineOptionType type, NyCommandLineOptionHandlerAbstract *handler,
    const QStringList &names, const QString &description, const QString &valueName, const QString &defaultValue)
{
    std::unique_ptr<NyCommandLineOptionHandlerAbstract> owned(handler);
    if (names.isEmpty()) {
        qWarning() << "command line option without a name:" << description;
        return;
    }
    QCommandLineOption declared(names, description);
    if (type == CommandLineOptionType::OptionWithValue) {
        // Without a name for its value the parser would take the option for a flag.
        declared.setValueName(valueName.isEmpty() ? names.constFirst() : valueName);
        declared.setDefaultValue(defaultValue);
    }
    if (!m_parser.addOption(declared)) {
        qWarning() << "command line option declared twice:" << names.join(QStringLiteral(", "));
        return;
    }
    m_options.push_back({type, std::move(owned), names, defaultValue});
}

void NyCommandLineParserAbstract::addOption(
    CommandLineOptionType type, const QStringList &names, const QString &description, const QString &valueName, const QString &defaultValue)
{
    addOption(type, nullptr, names, description, valueName, defaultValue);
}

void NyCommandLineParserAbstract::setApplicationDescription(const QString &description)
{
    m_parser.setApplicationDescription(description);
}

void NyCommandLineParserAbstract::addPositionalArgument(const QString &name, const QString &description, const QString &syntax)
{
    m_parser.addPositionalArgument(name, description, syntax);
}

bool NyCommandLineParserAbstract::isSet(const QString &name) const
{
    return m_parser.isSet(name);
}

QString NyCommandLineParserAbstract::value(const QString &name) const
{
    for (const Option &option : m_options) {
        if (!option.names.contains(name))
            continue;
        const QStringList values = m_parser.isSet(name) ? valuesOf(option) : QStringList();
        return values.isEmpty() ? option.defaultValue : values.constLast();
    }
    return {};
}

QStringList NyCommandLineParserAbstract::positionalArguments() const
{
    return m_parser.positionalArguments();
}

NyCommandLineParserAbstract::Option *NyCommandLineParserAbstract::optionOf(const QString &name)
{
    for (Option &option : m_options) {
        if (option.names.contains(name))
            return &option;
    }
    return nullptr;
}

QStringList NyCommandLineParserAbstract::valuesOf(const Option &option) const
{
    if (option.type == CommandLineOptionType::Flag)
        return {};
    QStringList values = m_parser.values(option.names.constFirst());
    for (QString &value : values) {
        if (value.isEmpty())
            value = option.defaultValue;
    }
    return values;
}

/** Gives an option that ends the line without its value the default value, where there is one. */
QStringList NyCommandLineParserAbstract::completedArguments(QStringList arguments)
{
    const QString last = arguments.size() > 1 ? arguments.constLast() : QString();
    if (!last.startsWith(QLatin1Char('-')) || arguments.contains(QStringLiteral("--")))
        return arguments;
    const Option *option = optionOf(last.sliced(last.startsWith(QStringLiteral("--")) ? 2 : 1));
    if (!option || option->type != CommandLineOptionType::OptionWithValue || option->defaultValue.isEmpty())
        return arguments;
    // The last word may itself be the value of the option before it.
    QCommandLineParser &parser = m_parser;
    if (!parser.parse(arguments))
        arguments.append(option->defaultValue);
    return arguments;
}

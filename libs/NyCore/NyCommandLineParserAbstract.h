#pragma once

#include <memory>
#include <vector>

#include <QtCore/QCommandLineParser>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "nycore_export.h"

class NyCommandLineOptionHandlerAbstract;

enum class CommandLineOptionType : int { OptionWithValue = 27, Flag = 28 };

/**
 * A program's command line: options, each with a handler that acts when it is used.
 *
 * Options are written "--name value", "--name=value", "-name value" or "-name=value". "--help" and "--version" are always
 * there. Needs a QCoreApplication, no display. Main thread.
 */
class NYCORE_EXPORT NyCommandLineParserAbstract
{
public:
    NyCommandLineParserAbstract();
    virtual ~NyCommandLineParserAbstract();

    /**
     * Reads QCoreApplication::arguments(), calls the handler of every option that was used, in the order of the options'
     * last use, and returns what evaluateCommandLine() returns. Ends the process with code 0 after "--help" or "--version",
     * with code 1 and a message on stderr when an option is not known or lacks its value.
     */
    QStringList processCommandLine();

    /** The arguments that are no options. */
    virtual QStringList evaluateCommandLine();

    /** Declares an option and takes over its handler. A value that is empty on the command line counts as the default value. */
    void addOption(CommandLineOptionType type, NyCommandLineOptionHandlerAbstract *handler, const QStringList &names,
        const QString &description, const QString &valueName, const QString &defaultValue);
    void addOption(CommandLineOptionType type, const QStringList &names, const QString &description, const QString &valueName,
        const QString &defaultValue);

    void setApplicationDescription(const QString &description);
    void addPositionalArgument(const QString &name, const QString &description, const QString &syntax = QString());

    bool isSet(const QString &name) const;
    /** The option's last value, else its default value. */
    QString value(const QString &name) const;
    QStringList positionalArguments() const;

private:
    Q_DISABLE_COPY_MOVE(NyCommandLineParserAbstract)

    struct Option
    {
        CommandLineOptionType type;
        std::unique_ptr<NyCommandLineOptionHandlerAbstract> handler;
        QStringList names;
        QString defaultValue;
    };

    Option *optionOf(const QString &name);
    QStringList valuesOf(const Option &option) const;
    QStringList completedArguments(QStringList arguments);

    QCommandLineParser m_parser;
    std::vector<Option> m_options;
};

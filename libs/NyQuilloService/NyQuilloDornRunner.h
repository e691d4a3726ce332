#pragma once

#include "nyquilloservice_export.h"

#include <NyCoTerminatingProcessRunner.h>

#include <QStringList>

/**
 * Starts the main program: supervised, as the builder of a proposal, or as a program of its own for the user. Main thread.
 *
 * No operation reports a failure to its caller; what went wrong stands in the log.
 */
class NYQUILLOSERVICE_EXPORT NyQuilloDornRunner : public NyCoTerminatingProcessRunner
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyQuilloDornRunner)

public:
    NyQuilloDornRunner();
    ~NyQuilloDornRunner() override;

    /** Starts a child that is followed until it ends, and that ends with this process at the latest. */
    void startAsService(const QStringList &arguments);
    /** Starts a program that lives on without this one. */
    void startAsIndependentProgram(const QStringList &arguments);

    /** The main program beside this executable, else where it is installed; the latter is not tested for existence. */
    QString processFilePath() const override;
    QString processFilePathWinLinux() const;
    QString processFilePathMac() const;

    void parseProcessMessage(const QString &message) override;
};

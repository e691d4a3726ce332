#pragma once

#include <memory>

#include <QtCore/QFileInfo>

#include "NySingleton.h"
#include "nycore_export.h"

/**
 * Catches Qt's log messages into the diagnostic log, and passes them on to whoever caught them before. Thread-safe.
 *
 * Lines are buffered; they are written at a warning, at flushLogFile(), when they are a second old and another comes,
 * when there are many, and when the process ends by returning from main or by exit().
 */
class NYCORE_EXPORT NyLogMessageHandler : public NySingleton<NyLogMessageHandler>
{
public:
    NyLogMessageHandler();
    ~NyLogMessageHandler() override;

    /** Logs into the file: everything when @p verbose, else only warnings and worse. An empty file ends the logging. */
    void setVerbose(bool verbose, const QFileInfo &logFile);

    void flushLogFile();

private:
    class Private;
    std::unique_ptr<Private> d;
};

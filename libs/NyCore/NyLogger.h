#pragma once

#include <memory>

#include <QtCore/QString>

#include "NySingleton.h"
#include "nycore_export.h"

class QObject;

/** The event log: usage records, apart from the diagnostic log. Thread-safe. */
class NYCORE_EXPORT NyLogger : public NySingleton<NyLogger>
{
public:
    NyLogger();
    ~NyLogger() override;

    /** Writes one record at once: an ISO time, a tab, the text with its line breaks escaped. */
    void logQuilloService(const QString &text);

    /**
     * Lets the diagnostic log tell, at debug level, when a menu's action is used. @p action is a QAction, or has its signal
     * triggered(bool) and its property "text" at least; otherwise a warning names it. Main thread.
     */
    void connectAction(QObject *action);

    /** Closes the file; the next record opens it again. */
    void closeFile();

private:
    class Private;
    std::unique_ptr<Private> d;
};

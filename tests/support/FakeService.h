#pragma once

#include "TestSupport.h"

#include <QTemporaryDir>

/** An executable of the service that records how it was started; the stored settings name it as the installed one. */
class FakeService
{
public:
    /** @p more: shell commands that it runs after that. */
    explicit FakeService(const QByteArray &more = QByteArray())
    {
        const QString script = path();
        // One write each, so that a start is seen whole.
        const QByteArray record = m_folder.filePath(QStringLiteral("starts")).toUtf8();
        TestSupport::writeFile(script, "#!/bin/sh\necho \"$*\" >> '" + record + "'\n" + more + "\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_section = "[common]\nquilloServicePath=\"" + script.toUtf8() + "\"\n";
    }
    Q_DISABLE_COPY_MOVE(FakeService)

    QString path() const { return m_folder.filePath(QStringLiteral("the service")); }
    /** Makes the settings those of a first run, but with this executable and with the service on or off. */
    bool storeSettings(bool autoStart) const
    {
        return TestSupport::writeFile(TestSupport::configFolder() + QStringLiteral("/settings.ini"),
            m_section + "autoStartService=" + (autoStart ? "true" : "false") + "\n");
    }
    /** The command lines of the starts so far. */
    QStringList starts() const
    {
        const QString record = QString::fromUtf8(TestSupport::readFile(m_folder.filePath(QStringLiteral("starts"))));
        return record.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_section;
};

#pragma once

#include "TestSupport.h"

#include <QCoreApplication>
#include <QTemporaryDir>

/**
 * A main program that only records how it was started, put beside the test's executable, where the service looks first.
 *
 * Each start writes its arguments, one a line, to a file of its own. While the gate is closed, a started program waits before
 * it ends; with `writesProposal` it writes the file behind "--proposalTargetPath" first.
 */
class FakeMainProgram
{
public:
    FakeMainProgram()
        : m_path(QCoreApplication::applicationDirPath() + QStringLiteral("/VELMORA ALBUMA"))
    {
        qputenv("NY_FAKE_FOLDER", QFile::encodeName(m_folder.path()));
        TestSupport::writeFile(m_path,
            "#!/bin/sh\n"
            "echo 'noise on standard output'\n"
            "for i in \"$@\"; do printf '%s\\n' \"$i\"; done > \"$NY_FAKE_FOLDER/start.$$~\"\n"
            "mv \"$NY_FAKE_FOLDER/start.$$~\" \"$NY_FAKE_FOLDER/start.$$\"\n"
            "while [ -e \"$NY_FAKE_FOLDER/gate\" ]; do sleep 0.02; done\n"
            "if [ -e \"$NY_FAKE_FOLDER/write\" ]; then\n"
            "  while [ $# -gt 0 ]; do [ \"$1\" = --proposalTargetPath ] && echo book > \"$2\"; shift; done\n"
            "fi\n");
        QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ~FakeMainProgram()
    {
        openGate();
        QFile::remove(m_path);
    }
    Q_DISABLE_COPY_MOVE(FakeMainProgram)

    QString path() const { return m_path; }
    void closeGate() const { TestSupport::writeFile(m_folder.filePath(QStringLiteral("gate")), ""); }
    void openGate() const { QFile::remove(m_folder.filePath(QStringLiteral("gate"))); }
    void setWritesProposal(bool writes) const
    {
        const QString path = m_folder.filePath(QStringLiteral("write"));
        if (writes)
            TestSupport::writeFile(path, "");
        else
            QFile::remove(path);
    }
    /** The arguments of each start so far, in the order of the starts. */
    QList<QStringList> starts() const
    {
        QList<QStringList> result;
        const QFileInfoList files
            = QDir(m_folder.path()).entryInfoList({QStringLiteral("start.*")}, QDir::Files, QDir::Time | QDir::Reversed);
        for (const QFileInfo &file : files) {
            if (file.fileName().endsWith(QLatin1Char('~')))
                continue;
            QStringList arguments = QString::fromUtf8(TestSupport::readFile(file.absoluteFilePath())).split(QLatin1Char('\n'));
            arguments.removeLast();
            result.append(arguments);
        }
        return result;
    }
    void forgetStarts() const
    {
        const QFileInfoList files = QDir(m_folder.path()).entryInfoList({QStringLiteral("start.*")}, QDir::Files);
        for (const QFileInfo &file : files)
            QFile::remove(file.absoluteFilePath());
    }

private:
    QTemporaryDir m_folder;
    QString m_path;
};

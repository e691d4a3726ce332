#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <cstdlib>

#include <unistd.h>

/**
 * Goes on as a copy of this program in the folder "bin" of a new folder, for tests that put files beside the program: beside the
 * real one they would meet other tests that run at the same time. First call in main.
 */
inline void runFromFolderOfItsOwn(char **argv)
{
    if (qEnvironmentVariableIsSet("NY_TEST_OWN_FOLDER"))
        return;
    const QString folder = QDir::tempPath() + QStringLiteral("/own.%1").arg(::getpid());
    const QString own = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    const QString copy = folder + QStringLiteral("/bin") + own.mid(own.lastIndexOf(QLatin1Char('/')));
    if (!QDir().mkpath(folder + QStringLiteral("/bin")) || !QFile::copy(own, copy))
        std::abort();
    qputenv("NY_TEST_OWN_FOLDER", QFile::encodeName(folder));
    ::execv(QFile::encodeName(copy).constData(), argv);
    std::abort();
}

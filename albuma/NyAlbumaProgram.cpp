#include "NyAlbumaProgram.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <QApplication>
#include <QDebug>
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QtConcurrent/QtConcurrentRun>

#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyGeneralSettings.h>
#include <NyLogMessageHandler.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceSettings.h>
#include <NyTranslation.h>
#include <NyUnixSignalNotifier.h>
#include <NyVersionConfig.h>

#include "NyAlbumaWindows.h"
#include "NyBackgroundPriority.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

void tell(const QString &text)
{
    const QByteArray line = (NyProgramConfig::instance().programName(NyProgramID::MainProgram) + u": "_s + text + u'\n').toLocal8Bit();
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
}

void nameApplication()
{
    QCoreApplication::setOrganizationName(u"VELMORA"_s);
    QCoreApplication::setApplicationName(NyProgramConfig::instance().programName(NyProgramID::MainProgram));
    QCoreApplication::setApplicationVersion(NyVersionConfig::instance().versionString());
    // Desktops match windows to the desktop entry by this name.
    QGuiApplication::setDesktopFileName(NyProgramConfig::instance().commandName(NyProgramID::MainProgram));
}

void startLogging()
{
    NyLogMessageHandler::instance().setVerbose(true, NyGeneralSettings::instance().logFile());
}

QtMessageHandler formerHandler = nullptr;
/** In the user's language; without an application object nothing could be translated. */
QString noDisplayText;

/** Without a usable display Qt ends the process with a crash report; this ends it with a message. */
void handleMessageDuringStart(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg) {
        tell(noDisplayText);
        std::_Exit(EXIT_FAILURE);
    }
    if (formerHandler)
        formerHandler(type, context, text);
}

NyAlbumaStart readCommandLine(int argc, char **argv)
{
    // An application object without a display, so that help, version and errors need none; it must not eat the arguments.
    std::vector<char *> copy(argv, argv + argc);
    copy.push_back(nullptr);
    QCoreApplication application(argc, copy.data());
    NyTranslation::install();
    noDisplayText
        = QCoreApplication::translate("NyAlbumaProgram", "Es kann kein Fenster geöffnet werden, weil keine Anzeige verfügbar ist.");
    return NyAlbumaCommandLine().read();
}

}

int NyAlbumaProgram::run(int &argc, char **argv)
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    nameApplication();
    const NyAlbumaStart start = readCommandLine(argc, argv);
    if (!start.error.isEmpty()) {
        tell(start.error);
        return EXIT_FAILURE;
    }
    return start.mode == NyAlbumaStart::Mode::Builder ? runBuilder(start, argc, argv) : runWindows(start, argc, argv);
}

int NyAlbumaProgram::runBuilder(const NyAlbumaStart &start, int &argc, char **argv)
{
    NyBackgroundPriority::lower();
    // Whatever display there is, the builder must not touch it.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    NyTranslation::install();
    startLogging();

    NyBuilderRequest request = start.builder;
    NyFotoSettings::instance().loadSettings();
    request.picturesHome = NyFotoSettings::instance().picturesHomePath();
    NyBookBuilder builder(request);
    const NyUnixSignalNotifier signalNotifier({SIGTERM, SIGINT, SIGHUP});
    QObject::connect(&signalNotifier, &NyUnixSignalNotifier::received, &application, [&builder] { builder.cancel(); });
    QFutureWatcher<QString> watcher;
    QObject::connect(&watcher, &QFutureWatcher<QString>::finished, &application, &QCoreApplication::quit);
    watcher.setFuture(QtConcurrent::run([&builder] { return builder.build(NyFotoListRegistry::instance().getFotosForBookProposal()); }));
    QCoreApplication::exec();
    // The loop may have been left by something else than the end of the work.
    builder.cancel();
    const QString error = watcher.result();
    if (error.isEmpty())
        return EXIT_SUCCESS;
    qInfo().noquote() << "builder: no book:" << error;
    tell(error);
    return EXIT_FAILURE;
}

int NyAlbumaProgram::runWindows(const NyAlbumaStart &start, int &argc, char **argv)
{
    formerHandler = qInstallMessageHandler(handleMessageDuringStart);
    QApplication application(argc, argv);
    qInstallMessageHandler(formerHandler);
    NyTranslation::install();
    startLogging();
    const NyUnixSignalNotifier signalNotifier({SIGTERM, SIGINT, SIGHUP});

    // The pictures home first: it is where the service looks unless the user said otherwise.
    NyFotoSettings::instance().loadSettings();
    NyQuilloServiceSettings::instance().loadSettings();
    NyAlbumaWindows windows(start.suppressLoadWarnings ? NyLoadWarnings::Suppress : NyLoadWarnings::Show);
    QObject::connect(&signalNotifier, &NyUnixSignalNotifier::received, &windows, &NyAlbumaWindows::end);
    if (start.projectFile.isEmpty())
        windows.showStart();
    else
        windows.openProject(start.projectFile);
    return QApplication::exec();
}

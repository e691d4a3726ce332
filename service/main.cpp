#include "NyUnixSignalNotifier.h"

#include <NyCommandLineParserQuilloService.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyTranslation.h>

#include <QApplication>

#include <csignal>
#include <cstring>
#include <memory>
#include <string_view>

namespace
{
enum class RunKind {
    /** Prints a text and ends. */
    Text,
    /** Ends without a window. */
    Windowless,
    Window,
};

/**
 * What the command line asks for: a run without a window must work where there is no display, and every other one must not be made
 * without one. Reads the line as the parser will: the last option that names a mode counts.
 */
RunKind runKind(int argc, char **argv)
{
    constexpr std::string_view modeOption = "serviceMode";
    bool windowless = false;
    for (int i = 1; i < argc; ++i) {
        std::string_view argument(argv[i]);
        if (argument == "--")
            break;
        if (!argument.starts_with('-'))
            continue;
        argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
        if (argument == "help" || argument == "h" || argument == "version" || argument == "v")
            return RunKind::Text;
        if (argument == "ToastActivated") {
            windowless = false;
            continue;
        }
        std::string_view value;
        if (argument == modeOption) {
            if (i + 1 < argc)
                value = argv[++i];
        } else if (argument.starts_with(modeOption) && argument.substr(modeOption.size()).starts_with('=')) {
            value = argument.substr(modeOption.size() + 1);
        } else {
            continue;
        }
        windowless = !value.empty() && std::strchr("uUzZsS", value.front());
    }
    return windowless ? RunKind::Windowless : RunKind::Window;
}

std::unique_ptr<QCoreApplication> createApplication(RunKind kind, int &argc, char **argv)
{
    if (kind != RunKind::Window)
        return std::make_unique<QCoreApplication>(argc, argv);

    // A session without a display, or one that does not answer, still gets its proposals: the notifications go over the bus.
    const bool platformChosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!platformChosen) {
        const bool wayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
        const bool x11 = qEnvironmentVariableIsSet("DISPLAY");
        QByteArray platforms;
        if (x11)
            platforms += "xcb;";
        if (wayland)
            platforms += "wayland;";
        qputenv("QT_QPA_PLATFORM", platforms + "offscreen");
    }
    auto application = std::make_unique<QApplication>(argc, argv);
    // The main program, which inherits these surroundings, chooses for itself.
    if (!platformChosen)
        qunsetenv("QT_QPA_PLATFORM");
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}
}

int main(int argc, char **argv)
{
    const RunKind kind = runKind(argc, argv);
    const std::unique_ptr<QCoreApplication> application = createApplication(kind, argc, argv);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QCoreApplication::setOrganizationName(QStringLiteral("VELMORA"));
    QCoreApplication::setApplicationName(NyProgramConfig::instance().programName(NyProgramID::QuilloService));
    if (kind == RunKind::Window)
        QGuiApplication::setDesktopFileName(NyProgramConfig::instance().commandName(NyProgramID::QuilloService));

    if (kind == RunKind::Text) {
        // The service's options are told in English everywhere, so all around them is, too.
        NyTranslation::install({QStringLiteral("en")});
        // Ends here: a text needs neither a bus nor watched folders.
        NyCommandLineParserQuilloService parser;
        parser.setApplicationDescription(QStringLiteral("Proposes photo books from the pictures of the past year."));
        parser.processCommandLine();
    }

    NyTranslation::install();
    NyQuilloServiceController &controller = NyQuilloServiceController::instance();
    NyUnixSignalNotifier signalNotifier({SIGTERM, SIGINT, SIGHUP});
    QObject::connect(&signalNotifier, &NyUnixSignalNotifier::received, &controller, &NyQuilloServiceController::quit);
    return controller.runService(QCoreApplication::arguments().mid(1));
}

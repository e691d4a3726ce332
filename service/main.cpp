#include "NyUnixSignalNotifier.h"

#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <csignal>
#include <cstring>
#include <memory>
#include <string_view>

namespace
{
/**
 * Whether the run asked for ends without a window: such a run must work where there is no display, and every other one must
 * not be made without a window. Reads the line as the parser will: the last option that names a mode counts.
 */
bool runsWithoutWindow(int argc, char **argv)
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
            return true;
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
    return windowless;
}

std::unique_ptr<QCoreApplication> createApplication(int &argc, char **argv)
{
    if (runsWithoutWindow(argc, argv))
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

void loadTranslations(QCoreApplication &application)
{
    auto *qtTranslator = new QTranslator(&application);
    if (qtTranslator->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qtTranslator);
    auto *translator = new QTranslator(&application);
    if (translator->load(QLocale(), QStringLiteral("velmora"), QStringLiteral("_"), QStringLiteral(":/velmora/translations")))
        QCoreApplication::installTranslator(translator);
}
}

int main(int argc, char **argv)
{
    const std::unique_ptr<QCoreApplication> application = createApplication(argc, argv);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QCoreApplication::setOrganizationName(QStringLiteral("VELMORA"));
    QCoreApplication::setApplicationName(NyProgramConfig::instance().programName(NyProgramID::QuilloService));
    loadTranslations(*application);

    NyQuilloServiceController &controller = NyQuilloServiceController::instance();
    NyUnixSignalNotifier signalNotifier({SIGTERM, SIGINT, SIGHUP});
    QObject::connect(&signalNotifier, &NyUnixSignalNotifier::received, &controller, &NyQuilloServiceController::quit);
    return controller.runService(QCoreApplication::arguments().mid(1));
}

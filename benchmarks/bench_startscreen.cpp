// How soon the main program's first window is seen with 200 proposals, beside a bare main window: from its making to the end of
// its first paint, and to the last preview on its cards. Runs in a home of its own, on the display that it is started on; without
// one, offscreen.

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QTemporaryDir>

#include <NyProposalView.h>
#include <NyQuilloServiceSettings.h>
#include <NyStartScreenSettings.h>
#include <NyStartWindow.h>

#include "Measurement.h"

namespace
{
using namespace Qt::Literals::StringLiterals;

constexpr int rounds = 15;
constexpr QSize previewSize(960, 720);

/** Knows when a window and all in it have been painted for the first time. */
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget &window)
    {
        window.installEventFilter(this);
        m_timer.start();
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A window paints all its children in one go when it is told to update, and this comes right after that.
        if (event->type() == QEvent::Paint && m_ms == 0)
            QMetaObject::invokeMethod(
                this, [this] { m_ms = double(m_timer.nsecsElapsed()) / 1e6; }, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }
    double ms() const { return m_ms; }

private:
    QElapsedTimer m_timer;
    double m_ms = 0;
};

double showUntilPainted(QWidget &window, const QElapsedTimer &made)
{
    const double makingMs = double(made.nsecsElapsed()) / 1e6;
    const FirstPaint paint(window);
    window.show();
    while (paint.ms() == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return makingMs + paint.ms();
}

double bareWindow()
{
    QElapsedTimer timer;
    timer.start();
    QMainWindow window;
    window.resize(1080, 760);
    return showUntilPainted(window, timer);
}

double startWindow()
{
    NyStartScreenSettings settings;
    QElapsedTimer timer;
    timer.start();
    NyStartWindow window(settings);
    return showUntilPainted(window, timer);
}

double startWindowToTheList()
{
    NyStartScreenSettings settings;
    QElapsedTimer timer;
    timer.start();
    NyStartWindow window(settings);
    window.show();
    while (!window.isUpToDate())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    // Painting the cards asks for their previews.
    window.view()->viewport()->repaint();
    while (!window.isComplete())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return double(timer.nsecsElapsed()) / 1e6;
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/** Proposals as the builder leaves them, each with a preview of its own. */
bool writeProposals(int count)
{
    const QString folder = NyQuilloServiceSettings::instance().bookProposalFileFolder();
    if (!QDir().mkpath(folder))
        return false;
    QImage image(previewSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb((x * x / 97 + y) % 256, (y * y / 71) % 256, (x * y / 53) % 256));
    }
    const QString preview = folder + u"preview"_s;
    if (!image.save(preview, "PNG"))
        return false;
    for (int i = 0; i < count; ++i) {
        const QString id = u"Produktvorschlag_%1.nqp"_s.arg(i);
        const QJsonObject description{
            {u"headline"_s, u"Sommerurlaub an der Ostsee %1"_s.arg(i)},
            {u"subline"_s, u"11. – 19. Juli 2026"_s},
            {u"creationDateEpoch"_s, 1780000000 + i},
            {u"menu"_s, QJsonArray{QJsonObject{{u"title"_s, u"Vorschlag öffnen"_s}, {u"action"_s, QString(u"open:"_s + id)}}}},
            {u"photoCount"_s, 80},
            {u"pageCount"_s, 26},
        };
        if (!write(folder + id + u".json"_s, QJsonDocument(description).toJson()) || !write(folder + id, "{}")
            || !QFile::copy(preview, folder + id + u".png"_s))
            return false;
    }
    return QFile::remove(preview);
}
}

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("TMPDIR", QFile::encodeName(home.path()));
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int count = argc > 1 ? std::max(0, std::atoi(argv[1])) : 200;
    if (!writeProposals(count)) {
        std::fprintf(stderr, "cannot write the proposals\n");
        return 1;
    }
    Measurement measurement;
    measurement.add("bare main window, first paint", bareWindow);
    measurement.add("start window, first paint", startWindow);
    measurement.add("start window, all previews in sight", startWindowToTheList);
    measurement.run(rounds);
    std::printf("%d proposals\n", count);
    measurement.print("bare main window, first paint");
    return 0;
}

#include "DesktopUser.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>
#include <QElapsedTimer>
#include <QSet>
#include <QTest>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>

namespace
{
constexpr int longestWaitMs = 30000;
constexpr int callMs = 3000;
constexpr int restMs = 250;
/** Deeper than any window of ours. */
constexpr int deepest = 30;

// Bits of AT-SPI's set of states.
constexpr uint checkedState = 4;
constexpr uint enabledState = 8;
constexpr uint selectedState = 23;
constexpr uint showingState = 25;

QVariant call(const QString &bus, const QString &service, const QString &path, const QString &interface, const QString &method,
    const QVariantList &arguments = QVariantList())
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage answer = QDBusConnection(bus).call(message, QDBus::Block, callMs);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0) : QVariant();
}

QString accessibleInterface()
{
    return QStringLiteral("org.a11y.atspi.Accessible");
}

QString property(const QString &bus, const QString &service, const QString &path, const QString &name)
{
    return call(bus, service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"), {accessibleInterface(), name})
        .value<QDBusVariant>()
        .variant()
        .toString();
}

bool isStateSet(const QList<uint> &states, uint state)
{
    return state / 32 < uint(states.size()) && states.at(state / 32) & (1U << (state % 32));
}

bool run(const QString &program, const QStringList &arguments)
{
    return QProcess::execute(program, arguments) == 0;
}
}

DesktopUser::DesktopUser(const QString &pictureFolder)
    : m_pictureFolder(pictureFolder)
    , m_busName(QStringLiteral("accessibility"))
{
    QDir(m_pictureFolder).removeRecursively();
    QDir().mkpath(m_pictureFolder);
    // What programs read when they start: they then tell without being asked by the desktop's settings.
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
}

DesktopUser::~DesktopUser()
{
    QDBusConnection::disconnectFromBus(m_busName);
    while (!m_parts.empty()) {
        QProcess &part = *m_parts.back();
        part.terminate();
        if (!part.waitForFinished(5000)) {
            part.kill();
            part.waitForFinished();
        }
        m_parts.pop_back();
    }
}

bool DesktopUser::startPart(const QString &program, const QStringList &arguments)
{
    auto part = std::make_unique<QProcess>();
    part->setStandardOutputFile(QProcess::nullDevice());
    part->setStandardErrorFile(QProcess::nullDevice());
    // Not left behind when the test is ended from outside.
    part->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    part->start(program, arguments);
    const bool started = part->waitForStarted();
    if (!started)
        std::fprintf(stderr, "cannot start %s\n", qPrintable(program));
    m_parts.push_back(std::move(part));
    return started;
}

bool DesktopUser::sitDown()
{
    const QString launcher = QStringLiteral("/usr/libexec/at-spi-bus-launcher");
    if (!startPart(launcher, {QStringLiteral("--launch-immediately")}) || !startPart(QStringLiteral("openbox")))
        return false;
    QString address;
    const bool hasBus = QTest::qWaitFor(
        [&] {
            address = call(QDBusConnection::sessionBus().name(), QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"))
                          .toString();
            return !address.isEmpty();
        },
        longestWaitMs);
    if (!hasBus || !QDBusConnection::connectToBus(address, m_busName).isConnected()) {
        std::fprintf(stderr, "the accessibility bus does not come up\n");
        return false;
    }
    const bool isManaged = QTest::qWaitFor(
        [] {
            return run(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("wmctrl -m >/dev/null 2>&1")});
        },
        longestWaitMs);
    if (!isManaged)
        std::fprintf(stderr, "the window manager does not come up\n");
    return isManaged;
}

void DesktopUser::collect(const QString &service, const QString &path, int depth, QList<Thing> &things) const
{
    const QVariant children = call(m_busName, service, path, accessibleInterface(), QStringLiteral("GetChildren"));
    if (!children.canConvert<QDBusArgument>() || depth > deepest)
        return;
    QList<std::pair<QString, QString>> found;
    const auto argument = children.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString childService;
        QDBusObjectPath childPath;
        argument.beginStructure();
        argument >> childService >> childPath;
        argument.endStructure();
        found.append({childService, childPath.path()});
    }
    argument.endArray();
    for (const auto &[childService, childPath] : std::as_const(found)) {
        const QVariant stateAnswer = call(m_busName, childService, childPath, accessibleInterface(), QStringLiteral("GetState"));
        const auto states = qdbus_cast<QList<uint>>(stateAnswer);
        Thing thing;
        thing.role = call(m_busName, childService, childPath, accessibleInterface(), QStringLiteral("GetRoleName")).toString();
        // A program is no thing of the screen itself.
        if (depth > 0) {
            if (!isStateSet(states, showingState))
                continue;
            thing.name = property(m_busName, childService, childPath, QStringLiteral("Name"));
            thing.description = property(m_busName, childService, childPath, QStringLiteral("Description"));
            thing.isChecked = isStateSet(states, checkedState);
            thing.isEnabled = isStateSet(states, enabledState);
            thing.isSelected = isStateSet(states, selectedState);
            thing.service = childService;
            thing.path = childPath;
            const QVariant extents = call(m_busName, childService, childPath, QStringLiteral("org.a11y.atspi.Component"),
                QStringLiteral("GetExtents"), {QVariant::fromValue(uint(0))});
            if (extents.canConvert<QDBusArgument>()) {
                const auto numbers = extents.value<QDBusArgument>();
                int x = 0;
                int y = 0;
                int width = 0;
                int height = 0;
                numbers.beginStructure();
                numbers >> x >> y >> width >> height;
                numbers.endStructure();
                thing.place = QRect(x, y, width, height);
            }
            things.append(thing);
        }
        collect(childService, childPath, depth + 1, things);
    }
}

QList<DesktopUser::Thing> DesktopUser::things() const
{
    QList<Thing> things;
    collect(QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/accessible/root"), 0, things);
    return things;
}

std::optional<DesktopUser::Thing> DesktopUser::find(const Condition &condition) const
{
    const QList<Thing> all = things();
    const auto found = std::find_if(all.begin(), all.end(), condition);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::optional<DesktopUser::Thing> DesktopUser::find(const QString &role, const QString &name) const
{
    return find([&](const Thing &thing) { return thing.role == role && thing.name == name; });
}

bool DesktopUser::showsWindow(const QString &windowClass)
{
    QProcess search;
    search.start(
        QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--class"), windowClass});
    return search.waitForFinished(5000) && !search.readAllStandardOutput().trimmed().isEmpty();
}

void DesktopUser::report(const char *what) const
{
    std::fprintf(stderr, "%s; on the screen is:\n", what);
    const QList<Thing> all = things();
    for (const Thing &thing : all) {
        std::fprintf(stderr, "%s \"%s\" (%s) %d,%d %dx%d%s%s\n", qPrintable(thing.role), qPrintable(thing.name),
            qPrintable(thing.description), thing.place.x(), thing.place.y(), thing.place.width(), thing.place.height(),
            thing.isChecked ? " checked" : "", thing.isEnabled ? "" : " disabled");
    }
    std::fflush(stderr);
}

bool DesktopUser::waitFor(const Condition &condition) const
{
    const bool isThere = QTest::qWaitFor([&] { return find(condition).has_value(); }, longestWaitMs);
    if (!isThere)
        report("what was waited for does not come");
    return isThere;
}

bool DesktopUser::waitFor(const QString &role, const QString &name) const
{
    return waitFor([&](const Thing &thing) { return thing.role == role && thing.name == name; });
}

bool DesktopUser::waitUntilGone(const Condition &condition) const
{
    const bool isGone = QTest::qWaitFor([&] { return !find(condition); }, longestWaitMs);
    if (!isGone)
        report("what was to go away stays");
    return isGone;
}

bool DesktopUser::waitUntilGone(const QString &role, const QString &name) const
{
    return waitUntilGone([&](const Thing &thing) { return thing.role == role && thing.name == name; });
}

bool DesktopUser::pressOn(const Condition &condition, int count)
{
    QRect place;
    QElapsedTimer atRest;
    const bool isThere = QTest::qWaitFor(
        [&] {
            const std::optional<Thing> thing = find([&](const Thing &candidate) { return candidate.isEnabled && condition(candidate); });
            // A window that the window manager is still placing is clicked where it is no longer.
            if (!thing || thing->place != place)
                atRest.restart();
            place = thing ? thing->place : QRect();
            return !place.isEmpty() && atRest.hasExpired(restMs);
        },
        longestWaitMs);
    if (!isThere) {
        report("what was to be clicked does not come");
        return false;
    }
    return clickAt(place.center(), count);
}

bool DesktopUser::click(const QString &role, const QString &name)
{
    return clickOn([&](const Thing &thing) { return thing.role == role && thing.name == name; });
}

bool DesktopUser::clickOn(const Condition &condition)
{
    return pressOn(condition, 1);
}

bool DesktopUser::doubleClickOn(const Condition &condition)
{
    return pressOn(condition, 2);
}

bool DesktopUser::act(const Thing &thing, int action) const
{
    return call(m_busName, thing.service, thing.path, QStringLiteral("org.a11y.atspi.Action"), QStringLiteral("DoAction"), {action})
        .toBool();
}

bool DesktopUser::write(const QString &lineName, const QString &text)
{
    return click(QStringLiteral("text"), lineName) && key(QStringLiteral("ctrl+a"))
        && run(QStringLiteral("xdotool"), {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("2"), text});
}

bool DesktopUser::key(const QString &keys)
{
    return run(QStringLiteral("xdotool"), {QStringLiteral("key"), keys});
}

bool DesktopUser::clickAt(QPoint place, int count)
{
    return run(QStringLiteral("xdotool"),
        {QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()), QStringLiteral("click"),
            QStringLiteral("--repeat"), QString::number(count), QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

QImage DesktopUser::screen() const
{
    QProcess grab;
    grab.start(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), QStringLiteral("bmp3:-")});
    grab.waitForFinished(30000);
    return QImage::fromData(grab.readAllStandardOutput(), "BMP");
}

qsizetype DesktopUser::coloursAt(const QRect &place) const
{
    const QImage picture = screen().copy(place);
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            colours.insert(picture.pixel(x, y));
    }
    return colours.size();
}

void DesktopUser::look(const QString &what)
{
    screen().save(QStringLiteral("%1/%2-%3.png").arg(m_pictureFolder).arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(what));
}

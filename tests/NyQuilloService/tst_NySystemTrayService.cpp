#include "TestSupport.h"

#include <NyPlatformIndependent.h>
#include <NyQuilloServiceConfig.h>
#include <NySystemTrayService.h>
#include <NyToastMessage.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

/** A platform that keeps the last proposal at hand itself. */
class RememberingPlatform : public NyPlatformIndependent
{
public:
    bool remembersLastProposalElsewhere() const override { return true; }
};

/** The menu and the signals, without a desktop. */
class tst_NySystemTrayService : public QObject
{
    Q_OBJECT

public:
    explicit tst_NySystemTrayService(bool debugging)
        : m_debugging(debugging)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();
    void menu();
    void entriesEmitTheirSignals();
    void lastProposalIsEnabledOnDemand();
    void lastProposalIsLeftOut();
    void debugEntriesAreQueued();
    void plainClickOpensTheMenu();
    void otherActivationsDoNothing();
    void messages();
    void showAndHide();
    void signalsAndSlotsInTheirOrder();

private:
    static QMenu *onlyMenu()
    {
        QList<QMenu *> menus;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *each = qobject_cast<QMenu *>(widget))
                menus.append(each);
        }
        return menus.size() == 1 ? menus.first() : nullptr;
    }
    static QAction *entry(const QString &text)
    {
        for (QAction *action : onlyMenu()->actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }
    static QStringList texts()
    {
        QStringList found;
        for (const QAction *action : onlyMenu()->actions())
            found.append(action->isSeparator() ? u"-"_s : action->text());
        return found;
    }
    /** Names of all signals that the service emits from now on. */
    static void record(NySystemTrayService *tray, QStringList *names)
    {
        connect(tray, &NySystemTrayService::quitRequested, tray, [names] { names->append(u"quit"_s); });
        connect(tray, &NySystemTrayService::launchMainApplicationRequested, tray, [names] { names->append(u"launch"_s); });
        connect(tray, &NySystemTrayService::productSuggestionRequested, tray, [names] { names->append(u"suggest"_s); });
        connect(tray, &NySystemTrayService::productSuggestionWithPicturesHomePhotosRequested, tray,
            [names] { names->append(u"suggest all"_s); });
        connect(tray, &NySystemTrayService::showInfoRequested, tray, [names] { names->append(u"info"_s); });
        connect(tray, &NySystemTrayService::showLastProposalRequested, tray, [names] { names->append(u"last"_s); });
    }

    const bool m_debugging;
};

static const QString INFO = u"Informationen zum Dienst"_s;
static const QString LAST = u"Letzten Vorschlag anzeigen"_s;
static const QString LAUNCH = u"VELMORA ALBUMA starten"_s;
static const QString QUIT = u"Beenden"_s;
static const QString SUGGEST = u"DEBUG: Jetzt Produktvorschlag erstellen"_s;
static const QString SUGGEST_ALL = u"DEBUG: Jetzt Produktvorschlag mit Fotos aus Pictures Home erstellen"_s;

void tst_NySystemTrayService::init()
{
    // The offscreen platform warns of what it cannot do.
    QTest::failOnWarning(
        QRegularExpression(u"^(?!This plugin does not support|QObject::connect: No such signal QPlatformNativeInterface)"_s));
    QCOMPARE(NyQuilloServiceConfig::instance().enableDebuggingFeatures(), m_debugging);
}

void tst_NySystemTrayService::cleanup()
{
    delete onlyMenu();
}

void tst_NySystemTrayService::menu()
{
    const NySystemTrayService tray;
    QCOMPARE(tray.parent(), nullptr);
    QVERIFY(onlyMenu());
    QCOMPARE(onlyMenu()->title(), u"VELMORA BILDARA QUILLO"_s);
    QStringList expected{INFO, LAST, LAUNCH, QUIT};
    if (m_debugging)
        expected << u"-"_s << SUGGEST << SUGGEST_ALL;
    QCOMPARE(texts(), expected);
    for (const QAction *action : onlyMenu()->actions()) {
        QCOMPARE(action->parent(), onlyMenu());
        QCOMPARE(action->isEnabled(), action->text() != LAST);
    }
    for (const QString &text : {INFO, LAST, LAUNCH, QUIT})
        QVERIFY2(!entry(text)->icon().isNull(), qPrintable(text));
}

void tst_NySystemTrayService::entriesEmitTheirSignals()
{
    NySystemTrayService tray;
    tray.setShowLastProposalActionEnabled(true);
    QStringList names;
    record(&tray, &names);
    QStringList expected;
    for (const auto &[text, name] :
        {std::pair(INFO, u"info"_s), std::pair(LAST, u"last"_s), std::pair(LAUNCH, u"launch"_s), std::pair(QUIT, u"quit"_s)}) {
        entry(text)->trigger();
        expected.append(name);
        QCOMPARE(names, expected);
    }
    QCoreApplication::processEvents();
    QCOMPARE(names, expected);
}

void tst_NySystemTrayService::lastProposalIsEnabledOnDemand()
{
    NySystemTrayService tray;
    QVERIFY(!entry(LAST)->isEnabled());
    tray.setShowLastProposalActionEnabled(true);
    QVERIFY(entry(LAST)->isEnabled());
    tray.setShowLastProposalActionEnabled(true);
    QVERIFY(entry(LAST)->isEnabled());
    tray.setShowLastProposalActionEnabled(false);
    QVERIFY(!entry(LAST)->isEnabled());
}

void tst_NySystemTrayService::lastProposalIsLeftOut()
{
    NySystemTrayService tray{RememberingPlatform()};
    QStringList expected{INFO, LAUNCH, QUIT};
    if (m_debugging)
        expected << u"-"_s << SUGGEST << SUGGEST_ALL;
    QCOMPARE(texts(), expected);
    tray.setShowLastProposalActionEnabled(true);
    tray.setShowLastProposalActionEnabled(false);
    QCOMPARE(texts(), expected);
}

void tst_NySystemTrayService::debugEntriesAreQueued()
{
    NySystemTrayService tray;
    QStringList names;
    record(&tray, &names);
    if (!m_debugging) {
        QVERIFY(!entry(SUGGEST));
        QVERIFY(!entry(SUGGEST_ALL));
        return;
    }
    entry(SUGGEST)->trigger();
    entry(SUGGEST_ALL)->trigger();
    QCOMPARE(names, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(names, (QStringList{u"suggest"_s, u"suggest all"_s}));
}

void tst_NySystemTrayService::plainClickOpensTheMenu()
{
    NySystemTrayService tray;
    QStringList names;
    record(&tray, &names);
    QCursor::setPos(100, 120);
    bool isSeen = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget *popup = QApplication::activePopupWidget();
        if (!popup)
            return;
        timer.stop();
        isSeen = true;
        QCOMPARE(popup, onlyMenu());
        QCOMPARE(popup->pos(), QPoint(100, 120));
        QTest::mouseClick(popup, Qt::LeftButton, Qt::NoModifier, onlyMenu()->actionGeometry(entry(QUIT)).center());
    });
    timer.start(0);
    tray.onActivate(QSystemTrayIcon::Trigger);
    QVERIFY(isSeen);
    QVERIFY(!onlyMenu()->isVisible());
    QCOMPARE(names, QStringList{u"quit"_s});
}

void tst_NySystemTrayService::otherActivationsDoNothing()
{
    NySystemTrayService tray;
    QSignalSpy aboutToShow(onlyMenu(), &QMenu::aboutToShow);
    for (const auto reason :
        {QSystemTrayIcon::Unknown, QSystemTrayIcon::Context, QSystemTrayIcon::DoubleClick, QSystemTrayIcon::MiddleClick})
        tray.onActivate(reason);
    QCOMPARE(aboutToShow.size(), 0);
}

void tst_NySystemTrayService::messages()
{
    NySystemTrayService tray;
    QStringList names;
    record(&tray, &names);
    tray.show();
    tray.showSystemTrayMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), QString(), false));
    tray.showSystemTrayMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), u"a.nqp"_s, true));
    tray.onMessageClick();
    QCoreApplication::processEvents();
    QCOMPARE(names, QStringList());
    QVERIFY(!onlyMenu()->isVisible());
}

void tst_NySystemTrayService::showAndHide()
{
    NySystemTrayService tray;
    tray.hide();
    tray.show();
    tray.show();
    tray.hide();
    tray.hide();
    QVERIFY(onlyMenu());
}

void tst_NySystemTrayService::signalsAndSlotsInTheirOrder()
{
    const QMetaObject &meta = NySystemTrayService::staticMetaObject;
    QStringList signalNames;
    QStringList slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        (method.methodType() == QMetaMethod::Signal ? signalNames : slotNames).append(QString::fromLatin1(method.methodSignature()));
    }
    QCOMPARE(signalNames,
        (QStringList{u"quitRequested()"_s, u"launchMainApplicationRequested()"_s, u"productSuggestionRequested()"_s,
            u"productSuggestionWithPicturesHomePhotosRequested()"_s, u"showInfoRequested()"_s, u"showLastProposalRequested()"_s}));
    QCOMPARE(slotNames,
        (QStringList{u"show()"_s, u"hide()"_s, u"showSystemTrayMessage(NyToastMessage)"_s,
            u"onActivate(QSystemTrayIcon::ActivationReason)"_s, u"onMessageClick()"_s}));
}

int main(int argc, char *argv[])
{
    // The configuration is read once in a process, so each of its two faces has a run of its own.
    const bool debugging = qEnvironmentVariableIsSet("NY_TEST_DEBUGGING");
    if (!TestSupport::writeServiceConfig(debugging ? "<debug enabled=\"true\"/>" : "<debug/>"))
        qFatal("no configuration");
    QApplication application(argc, argv);
    tst_NySystemTrayService test(debugging);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NySystemTrayService.moc"

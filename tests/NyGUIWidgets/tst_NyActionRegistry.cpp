#include <NyActionFactory.h>
#include <NyActionFactoryCommon.h>
#include <NyActionRegistry.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

class Receiver : public QObject
{
    Q_OBJECT

public:
    int calls() const { return m_calls; }

public Q_SLOTS:
    void onTriggered() { ++m_calls; }

Q_SIGNALS:
    void passedOn();

private:
    int m_calls = 0;
};

class tst_NyActionRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void actions_data();
    void actions();
    void unknownType();
    void slotIsCalled();
    void signalIsPassedOn();
    void useIsLogged();
    void onlyActionsCanBeLogged();
    void parents();
    void eachActionIsNew();
    void creationIsReported();
};

void tst_NyActionRegistry::actions_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("information") << 1410 << u"Informationen zum Dienst"_s;
    QTest::newRow("launch") << 1411 << u"Programm starten"_s;
    QTest::newRow("quit") << 1412 << u"Beenden"_s;
    QTest::newRow("last proposal") << 1413 << u"Letzten Vorschlag anzeigen"_s;
}

void tst_NyActionRegistry::actions()
{
    QFETCH(int, type);
    auto *factory = NyActionFactory::factory(static_cast<NyActionType>(type));
    QVERIFY(dynamic_cast<NyActionFactoryCommon *>(factory));
    Receiver receiver;
    const std::unique_ptr<QAction> action(
        NyActionRegistry::instance().unregisteredAction(static_cast<NyActionType>(type), &receiver, &Receiver::onTriggered, nullptr));
    QVERIFY(action);
    QTEST(action->text(), "text");
    QVERIFY(!action->icon().isNull());
    QVERIFY(!action->icon().pixmap(16, 16).isNull());
    QVERIFY(action->isEnabled());
    QVERIFY(!action->isSeparator());
    QCOMPARE(action->parent(), nullptr);
}

void tst_NyActionRegistry::unknownType()
{
    Receiver receiver;
    QSignalSpy created(&NyActionRegistry::instance(), &NyActionRegistry::unregisteredActionCreated);
    for (const int type : {0, -1, 1409, 1414}) {
        QCOMPARE(NyActionFactory::factory(static_cast<NyActionType>(type)), nullptr);
        QCOMPARE(NyActionRegistry::instance().unregisteredAction(static_cast<NyActionType>(type), &receiver, &Receiver::onTriggered, this),
            nullptr);
        QCOMPARE(NyActionFactoryCommon().createAndConfigureAction(static_cast<NyActionType>(type)), nullptr);
    }
    QCOMPARE(created.size(), 0);
}

void tst_NyActionRegistry::slotIsCalled()
{
    Receiver receiver;
    const std::unique_ptr<QAction> action(
        NyActionRegistry::instance().unregisteredAction(NyActionType::QuitService, &receiver, &Receiver::onTriggered, nullptr));
    action->trigger();
    QCOMPARE(receiver.calls(), 1);
    action->setEnabled(false);
    action->trigger();
    QCOMPARE(receiver.calls(), 1);
}

void tst_NyActionRegistry::signalIsPassedOn()
{
    Receiver receiver;
    QSignalSpy passedOn(&receiver, &Receiver::passedOn);
    const std::unique_ptr<QAction> action(
        NyActionRegistry::instance().unregisteredAction(NyActionType::ShowLastProposal, &receiver, &Receiver::passedOn, nullptr));
    action->trigger();
    QCOMPARE(passedOn.size(), 1);
}

void tst_NyActionRegistry::useIsLogged()
{
    Receiver receiver;
    const std::unique_ptr<QAction> action(
        NyActionRegistry::instance().unregisteredAction(NyActionType::QuitService, &receiver, &Receiver::onTriggered, nullptr));
    action->setText(u"Schluss"_s);
    QTest::ignoreMessage(QtDebugMsg, "action used: \"Schluss\"");
    action->trigger();
}

void tst_NyActionRegistry::onlyActionsCanBeLogged()
{
    QObject plain;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"No such signal QObject::triggered"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^no action to log: QObject"_s));
    NyLogger::instance().connectAction(&plain);
}

void tst_NyActionRegistry::parents()
{
    Receiver receiver;
    QPointer<QAction> action;
    {
        QObject parent;
        action = NyActionRegistry::instance().unregisteredAction(NyActionType::QuitService, &receiver, &Receiver::onTriggered, &parent);
        QCOMPARE(action->parent(), &parent);
    }
    QVERIFY(!action);
}

void tst_NyActionRegistry::eachActionIsNew()
{
    Receiver receiver;
    QObject parent;
    QAction *first = NyActionRegistry::instance().unregisteredAction(NyActionType::QuitService, &receiver, &Receiver::onTriggered, &parent);
    QAction *second
        = NyActionRegistry::instance().unregisteredAction(NyActionType::QuitService, &receiver, &Receiver::onTriggered, &parent);
    QVERIFY(first != second);
    second->trigger();
    QCOMPARE(receiver.calls(), 1);
}

void tst_NyActionRegistry::creationIsReported()
{
    Receiver receiver;
    QObject parent;
    QAction *reported = nullptr;
    QObject *parentWhenReported = nullptr;
    connect(
        &NyActionRegistry::instance(), &NyActionRegistry::unregisteredActionCreated, &receiver, [&](NyActionType type, QAction *action) {
            QCOMPARE(static_cast<int>(type), 1411);
            reported = action;
            parentWhenReported = action->parent();
        });
    QAction *action
        = NyActionRegistry::instance().unregisteredAction(NyActionType::LaunchMainApplication, &receiver, &Receiver::onTriggered, &parent);
    QCOMPARE(reported, action);
    QCOMPARE(parentWhenReported, &parent);
}

QTEST_MAIN(tst_NyActionRegistry)
#include "tst_NyActionRegistry.moc"

#include <NyPreferencesBox.h>

#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
class Box : public NyPreferencesBox
{
public:
    using NyPreferencesBox::NyPreferencesBox;
    void writeToConfig() override { stored = shown; }
    void readFromConfig() override { shown = stored; }

    int stored = 1;
    int shown = 0;
};
}

class tst_NyPreferencesBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheWindowAsks();
    void revertingReadsAgain();
    void onAPageOfTheWizard();
};

void tst_NyPreferencesBox::whatTheWindowAsks()
{
    QWidget window;
    Box box(&window, u"Titel"_s, NyPreferencesType::General);
    NyPreferencesItem &item = box;
    QCOMPARE(box.title(), u"Titel"_s);
    QCOMPARE(box.parentWidget(), &window);
    QCOMPARE(int(item.type()), 0);
    QVERIFY(item.checkLeaveCondition());
    QVERIFY(!box.showSpecialWidget());
    QCOMPARE(box.stackItemWidget(), &box);
}

void tst_NyPreferencesBox::revertingReadsAgain()
{
    Box box(nullptr, u"Titel"_s, NyPreferencesType::General);
    NyPreferencesItem &item = box;
    item.readFromConfig();
    box.shown = 7;
    item.revertChanges();
    QCOMPARE(box.shown, 1);
    box.shown = 8;
    item.writeToConfig();
    item.revertChanges();
    QCOMPARE(box.shown, 8);
}

void tst_NyPreferencesBox::onAPageOfTheWizard()
{
    QWidget *const window = new QWidget;
    auto *box = new Box(window, u"Titel"_s, NyPreferencesType::General);
    const std::unique_ptr<QWidget> page(box->extractWidgetForWelcomeWizard());
    QVERIFY(!page->parentWidget());
    delete window;
    QCOMPARE(page.get(), box);
    QCOMPARE(box->title(), QString());
    QVERIFY(box->isFlat());
    QCOMPARE(page->accessibleName(), u"Titel"_s);
    // Asked a second time, as a wizard that is opened again would.
    QCOMPARE(box->extractWidgetForWelcomeWizard(), page.get());
    QCOMPARE(page->accessibleName(), u"Titel"_s);
}

QTEST_MAIN(tst_NyPreferencesBox)
#include "tst_NyPreferencesBox.moc"

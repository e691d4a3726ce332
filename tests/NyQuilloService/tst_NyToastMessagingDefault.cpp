#include <NyToastMessage.h>
#include <NyToastMessagingDefault.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::Literals::StringLiterals;

class tst_NyToastMessagingDefault : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void grid_data();
    void grid();
    void closing_data();
    void closing();

private:
    /** Looks at the dialog as soon as it is on the screen, and closes it. */
    static void lookAt(const std::function<void(QDialog *)> &look, QTimer *timer)
    {
        connect(timer, &QTimer::timeout, timer, [look, timer] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            timer->stop();
            look(dialog);
        });
        timer->start(0);
    }
};

void tst_NyToastMessagingDefault::grid_data()
{
    QTest::addColumn<QString>("image");
    QTest::addColumn<bool>("isPicture");
    QTest::newRow("picture") << u"picture.png"_s << true;
    QTest::newRow("missing picture") << u"missing.png"_s << false;
    QTest::newRow("no picture") << QString() << false;
}

void tst_NyToastMessagingDefault::grid()
{
    QFETCH(QString, image);
    QFETCH(bool, isPicture);
    QImage picture(200, 100, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    QVERIFY(picture.save(QDir::tempPath() + u"/picture.png"_s));

    NyToastMessagingDefault messaging(this);
    QCOMPARE(messaging.parent(), this);
    QTimer timer;
    bool isSeen = false;
    lookAt(
        [&](QDialog *dialog) {
            isSeen = true;
            QCOMPARE(dialog->parent(), nullptr);
            QCOMPARE(dialog->styleSheet(), QString());
            QCOMPARE(dialog->windowTitle(), QString());
            auto *grid = qobject_cast<QGridLayout *>(dialog->layout());
            QVERIFY(grid);
            QCOMPARE(grid->count(), 3);
            const QList<QList<int>> expected{{0, 1, 1, 2}, {1, 1, 1, 2}, {0, 0, 2, 1}};
            QStringList texts;
            for (int i = 0; i < 3; ++i) {
                int row, column, rowSpan, columnSpan;
                grid->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
                QCOMPARE((QList<int>{row, column, rowSpan, columnSpan}), expected.at(i));
                auto *label = qobject_cast<QLabel *>(grid->itemAt(i)->widget());
                QVERIFY(label);
                QCOMPARE(label->parentWidget(), dialog);
                texts.append(label->text());
                if (i == 2)
                    QCOMPARE(label->pixmap().isNull(), !isPicture);
                if (i == 2 && isPicture)
                    QCOMPARE(label->pixmap().size(), QSize(200, 100));
            }
            QCOMPARE(texts, (QStringList{u"Der Titel"_s, u"Der Text"_s, QString()}));
            dialog->close();
        },
        &timer);
    messaging.sendToastMessage(NyToastMessage(
        u"Der Titel"_s, u"Der Text"_s, image.isEmpty() ? QFileInfo() : QFileInfo(QDir::tempPath() + u'/' + image), u"a.nqp"_s, true));
    QVERIFY(isSeen);
}

void tst_NyToastMessagingDefault::closing_data()
{
    QTest::addColumn<QString>("way");
    for (const QString &way : {u"close"_s, u"accept"_s, u"reject"_s})
        QTest::newRow(qPrintable(way)) << way;
}

void tst_NyToastMessagingDefault::closing()
{
    QFETCH(QString, way);
    NyToastMessagingDefault messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    QTimer timer;
    QPointer<QDialog> dialog;
    bool isBlocked = true;
    lookAt(
        [&](QDialog *seen) {
            dialog = seen;
            QVERIFY(isBlocked);
            QVERIFY(seen->isModal());
            if (way == u"close"_s)
                seen->close();
            else if (way == u"accept"_s)
                seen->accept();
            else
                seen->reject();
        },
        &timer);
    messaging.sendToastMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), u"a.nqp"_s, true));
    isBlocked = false;
    QVERIFY(dialog);
    QVERIFY(!dialog->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QCOMPARE(shown.size(), 0);
    QCOMPARE(rescheduled.size(), 0);
}

QTEST_MAIN(tst_NyToastMessagingDefault)
#include "tst_NyToastMessagingDefault.moc"

#include <NyRequest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <functional>

/** Answers the next question as soon as it is on the screen. */
class Answer : public QObject
{
    Q_OBJECT

public:
    explicit Answer(std::function<void(QMessageBox *)> action)
    {
        connect(&m_timer, &QTimer::timeout, this, [this, action = std::move(action)] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || !box->isVisible())
                return;
            m_timer.stop();
            ++m_questions;
            action(box);
        });
        m_timer.start(0);
    }
    int questions() const { return m_questions; }

private:
    QTimer m_timer;
    int m_questions = 0;
};

static QAbstractButton *buttonOf(const QMessageBox *box, const QString &text)
{
    for (QAbstractButton *button : box->buttons()) {
        if (button->text().remove(QLatin1Char('&')) == text)
            return button;
    }
    return nullptr;
}

class WarningRequest : public NyRequest
{
    Q_OBJECT

public:
    QWidget *createWarningsOverviewWidget() const override { return new QLabel(QStringLiteral("Zwei Fotos fehlen.")); }
    bool hasAnyWarnings() const override { return m_hasWarnings; }
    bool m_hasWarnings = true;
};

class tst_NyRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }
    void attentionString() { QCOMPARE(NyRequest::attentionString(), QStringLiteral("Achtung")); }
    void pressedButtonIsTheAnswer_data();
    void pressedButtonIsTheAnswer();
    void enterPressesTheDefault_data();
    void enterPressesTheDefault();
    void closingMeansNo();
    void textsStandAsTheyAre();
    void aNameInTheQuestion_data();
    void aNameInTheQuestion();
    void ownLabels();
    void windowAboveIsClosedMeanwhile();
    void warnings();
};

void tst_NyRequest::pressedButtonIsTheAnswer_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("expected");
    QTest::newRow("yes") << QStringLiteral("Ja") << true;
    QTest::newRow("no") << QStringLiteral("Nein") << false;
}

void tst_NyRequest::pressedButtonIsTheAnswer()
{
    QFETCH(QString, button);
    QFETCH(bool, expected);
    const NyRequest request;
    const Answer answer([&](QMessageBox *box) {
        QCOMPARE(box->buttons().size(), 2);
        QTest::mouseClick(buttonOf(box, button), Qt::LeftButton);
    });
    QCOMPARE(request.yesNoQuestion(QStringLiteral("Titel"), QStringLiteral("Frage?"), QString(), false, QString(), QString()), expected);
    QCOMPARE(answer.questions(), 1);
}

void tst_NyRequest::enterPressesTheDefault_data()
{
    QTest::addColumn<bool>("yesIsDefault");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_NyRequest::enterPressesTheDefault()
{
    QFETCH(bool, yesIsDefault);
    const NyRequest request;
    const Answer answer([](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Return); });
    QCOMPARE(request.yesNoQuestion(QString(), QStringLiteral("Frage?"), QString(), yesIsDefault, QString(), QString()), yesIsDefault);
    QCOMPARE(answer.questions(), 1);
}

void tst_NyRequest::closingMeansNo()
{
    const NyRequest request;
    const Answer escape([](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Escape); });
    QVERIFY(!request.yesNoQuestion(QString(), QStringLiteral("Frage?"), QString(), true, QString(), QString()));
    QCOMPARE(escape.questions(), 1);
    const Answer close([](QMessageBox *box) { box->close(); });
    QVERIFY(!request.yesNoQuestion(QString(), QStringLiteral("Frage?"), QString(), true, QString(), QString()));
    QCOMPARE(close.questions(), 1);
}

void tst_NyRequest::textsStandAsTheyAre()
{
    const NyRequest request;
    const QString question = QStringLiteral("<b>Anna & Tom</b> %1 löschen?");
    const Answer answer([&](QMessageBox *box) {
        QCOMPARE(box->windowTitle(), QStringLiteral("Achtung"));
        QCOMPARE(box->text(), question);
        QCOMPARE(box->informativeText(), QStringLiteral("<i>Mehr</i>"));
        for (const QLabel *label : box->findChildren<QLabel *>()) {
            if (label->text() == question)
                QCOMPARE(label->textFormat(), Qt::PlainText);
        }
        box->close();
    });
    request.yesNoQuestion(NyRequest::attentionString(), question, QStringLiteral("<i>Mehr</i>"), false, QString(), QString());
    QCOMPARE(answer.questions(), 1);
}

void tst_NyRequest::aNameInTheQuestion_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("short") << QStringLiteral("Wien");
    QTest::newRow("empty") << QString();
    QTest::newRow("many words") << QStringLiteral("Wort ").repeated(20000);
    QTest::newRow("one word") << QStringLiteral("W").repeated(20000);
    QTest::newRow("pairs of surrogates") << QStringLiteral("\U0001F382").repeated(20000);
    QTest::newRow("pairs of surrogates, one off") << QStringLiteral("x") + QStringLiteral("\U0001F382").repeated(20000);
    QTest::newRow("from right to left") << QStringLiteral("gpj.\u202egnp");
    QTest::newRow("in a direction of its own") << QStringLiteral("gpj.\u2067gnp");
}

void tst_NyRequest::aNameInTheQuestion()
{
    QFETCH(QString, name);
    const NyRequest request;
    const Answer answer([](QMessageBox *box) {
        const auto closing = qScopeGuard([box] { box->close(); });
        const QString text = box->text();
        QVERIFY2(text.startsWith(QStringLiteral("Soll „")), qPrintable(text));
        QVERIFY2(text.endsWith(QStringLiteral("“ weg?")), qPrintable(text));
        QVERIFY(text.isValidUtf16());
        QVERIFY(!text.contains(QChar(0x202e)) && !text.contains(QChar(0x2067)));
        QVERIFY2(box->screen()->availableGeometry().contains(QRect(QPoint(0, 0), box->size())), qPrintable(QString::number(box->height())));
    });
    request.yesNoQuestion(QString(), QStringLiteral("Soll „%1“ weg?").arg(name), QString(), false, QString(), QString());
    QCOMPARE(answer.questions(), 1);
}

void tst_NyRequest::ownLabels()
{
    const NyRequest request;
    const Answer answer([](QMessageBox *box) {
        QVERIFY(buttonOf(box, QStringLiteral("Behalten")));
        QTest::mouseClick(buttonOf(box, QStringLiteral("Löschen")), Qt::LeftButton);
    });
    QVERIFY(request.yesNoQuestion(
        QString(), QStringLiteral("Frage?"), QString(), false, QStringLiteral("&Löschen"), QStringLiteral("&Behalten")));
    QCOMPARE(answer.questions(), 1);
}

void tst_NyRequest::windowAboveIsClosedMeanwhile()
{
    auto *window = new QWidget;
    window->show();
    window->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), window);
    const NyRequest request;
    const Answer answer([window](QMessageBox *box) {
        QCOMPARE(box->parentWidget(), window);
        delete window;
    });
    QVERIFY(!request.yesNoQuestion(QString(), QStringLiteral("Frage?"), QString(), true, QString(), QString()));
    QCOMPARE(answer.questions(), 1);
}

void tst_NyRequest::warnings()
{
    const NyRequest plain;
    QVERIFY(!plain.hasAnyWarnings());
    QCOMPARE(plain.createWarningsOverviewWidget(), nullptr);

    WarningRequest request;
    for (const bool hasWarnings : {true, false}) {
        request.m_hasWarnings = hasWarnings;
        bool isShown = false;
        const Answer answer([&](QMessageBox *box) {
            for (const QLabel *label : box->findChildren<QLabel *>())
                isShown |= label->text() == QStringLiteral("Zwei Fotos fehlen.") && label->isVisible();
            box->close();
        });
        request.yesNoQuestion(QString(), QStringLiteral("Frage?"), QString(), true, QString(), QString());
        QCOMPARE(answer.questions(), 1);
        QCOMPARE(isShown, hasWarnings);
    }
}

QTEST_MAIN(tst_NyRequest)
#include "tst_NyRequest.moc"

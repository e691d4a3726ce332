#include <NyRequestQuilloService.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

/** Takes the question instead of the user. */
class RecordingRequest : public NyRequestQuilloService
{
    Q_OBJECT

public:
    bool yesNoQuestion(const QString &title, const QString &question, const QString &informativeText, bool yesIsDefault,
        const QString &yesLabel, const QString &noLabel) const override
    {
        m_calls.append({title, question, informativeText, yesIsDefault, yesLabel, noLabel});
        return m_answer;
    }
    mutable QList<QVariantList> m_calls;
    bool m_answer = false;
};

class tst_NyRequestQuilloService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void question_data();
    void question();
    void answerIsPassedOn();
    void realQuestion_data();
    void realQuestion();
};

void tst_NyRequestQuilloService::question_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("name") << u"Hochzeit"_s << u"Möchten Sie den Buchvorschlag „Hochzeit“ wirklich löschen?"_s;
    QTest::newRow("empty") << QString() << u"Möchten Sie den Buchvorschlag wirklich löschen?"_s;
    QTest::newRow("several blanks") << u"Anna   und  Tom"_s << u"Möchten Sie den Buchvorschlag „Anna und Tom“ wirklich löschen?"_s;
    QTest::newRow("line break and tab") << u"Anna\n\tund Tom"_s << u"Möchten Sie den Buchvorschlag „Anna und Tom“ wirklich löschen?"_s;
    QTest::newRow("blanks around") << u"  Anna  "_s << u"Möchten Sie den Buchvorschlag „ Anna “ wirklich löschen?"_s;
    QTest::newRow("only blanks") << u"   "_s << u"Möchten Sie den Buchvorschlag „ “ wirklich löschen?"_s;
    QTest::newRow("percent signs") << u"100%1 %2"_s << u"Möchten Sie den Buchvorschlag „100%1 %2“ wirklich löschen?"_s;
    QTest::newRow("markup and quotation marks")
        << u"<b>„A“ & \"B\"</b>"_s << u"Möchten Sie den Buchvorschlag „<b>„A“ & \"B\"</b>“ wirklich löschen?"_s;
}

void tst_NyRequestQuilloService::question()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    const RecordingRequest request;
    request.askDeleteBookProposal(name);
    QCOMPARE(request.m_calls, (QList<QVariantList>{{NyRequest::attentionString(), expected, QString(), false, QString(), QString()}}));
}

void tst_NyRequestQuilloService::answerIsPassedOn()
{
    RecordingRequest request;
    QVERIFY(!request.askDeleteBookProposal(u"A"_s));
    request.m_answer = true;
    QVERIFY(request.askDeleteBookProposal(u"A"_s));
}

void tst_NyRequestQuilloService::realQuestion_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("expected");
    QTest::newRow("yes") << u"Ja"_s << true;
    QTest::newRow("no") << u"Nein"_s << false;
}

void tst_NyRequestQuilloService::realQuestion()
{
    QFETCH(QString, button);
    QTimer timer;
    QString text;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        text = box->text();
        for (QAbstractButton *each : box->buttons()) {
            if (each->text().remove(u'&') == button)
                QTest::mouseClick(each, Qt::LeftButton);
        }
    });
    timer.start(0);
    QTEST(NySingleton<NyRequestQuilloService>::instance().askDeleteBookProposal(u"Hochzeit"_s), "expected");
    QCOMPARE(text, u"Möchten Sie den Buchvorschlag „Hochzeit“ wirklich löschen?"_s);
}

QTEST_MAIN(tst_NyRequestQuilloService)
#include "tst_NyRequestQuilloService.moc"

#include "NyRequest.h"

#include <QApplication>
#include <QDebug>
#include <QGridLayout>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <NyText.h>

namespace
{
/** Some lines: with more, the buttons would leave the screen. */
constexpr qsizetype LONGEST_QUESTION = 400;

/** Without the signs by which a name in it could turn round what follows, and shortened in its middle: its end is what is asked. */
QString shownQuestion(QString question)
{
    question.removeIf(NyText::turnsDirection);
    if (question.size() <= LONGEST_QUESTION)
        return question;
    return NyText::beginning(question, LONGEST_QUESTION / 2) + QChar(u'…') + NyText::end(question, LONGEST_QUESTION / 2 - 1);
}
}

NyRequest::NyRequest(QObject *parent)
    : QObject(parent)
{
}

NyRequest::~NyRequest() = default;

QString NyRequest::attentionString()
{
    return tr("Achtung");
}

bool NyRequest::yesNoQuestion(const QString &title, const QString &question, const QString &informativeText, bool yesIsDefault,
    const QString &yesLabel, const QString &noLabel) const
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        qWarning() << "a question cannot be shown in this process and counts as denied:" << question;
        return false;
    }
    // The window above may be closed, and take the box with it, while the box has the event loop.
    const QPointer<QMessageBox> box
        = new QMessageBox(QMessageBox::Question, title, shownQuestion(question), QMessageBox::NoButton, QApplication::activeWindow());
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(informativeText);
    QPushButton *yes = box->addButton(yesLabel.isEmpty() ? tr("&Ja") : yesLabel, QMessageBox::YesRole);
    QPushButton *no = box->addButton(noLabel.isEmpty() ? tr("&Nein") : noLabel, QMessageBox::NoRole);
    box->setDefaultButton(yesIsDefault ? yes : no);
    box->setEscapeButton(no);
    if (hasAnyWarnings()) {
        if (QWidget *overview = createWarningsOverviewWidget()) {
            if (auto *grid = qobject_cast<QGridLayout *>(box->layout()))
                grid->addWidget(overview, grid->rowCount(), 0, 1, grid->columnCount());
            else
                delete overview;
        }
    }
    box->exec();
    const bool answer = box && box->clickedButton() == yes;
    delete box.data();
    return answer;
}

QWidget *NyRequest::createWarningsOverviewWidget() const
{
    return nullptr;
}

bool NyRequest::hasAnyWarnings() const
{
    return false;
}

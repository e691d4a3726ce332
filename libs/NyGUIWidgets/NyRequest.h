#pragma once

#include "nyguiwidgets_export.h"

#include <QObject>
#include <QString>

class QWidget;

/** Questions to the user. Main thread; each blocks in an event loop of its own until it is answered. */
class NYGUIWIDGETS_EXPORT NyRequest : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyRequest)

public:
    explicit NyRequest(QObject *parent = nullptr);
    ~NyRequest() override;

    /** The title of a question that wants care. */
    static QString attentionString();

    /**
     * Asks a question that is answered with yes or no.
     *
     * All texts are shown as they stand, never as markup; a question that the screen could not hold is shortened in its middle, and
     * signs in it that turn the direction of writing are left out. `informativeText` stands below the question, in smaller type. The
     * button that the Enter key presses is the one for yes if `yesIsDefault`, otherwise the one for no. Empty labels
     * mean "Ja" and "Nein". Closing the window, and a process that cannot show windows, mean no.
     */
    virtual bool yesNoQuestion(const QString &title, const QString &question, const QString &informativeText, bool yesIsDefault,
        const QString &yesLabel, const QString &noLabel) const;

    /** A new widget that goes below every question of this object while hasAnyWarnings(); null here. */
    virtual QWidget *createWarningsOverviewWidget() const;
    /** Whether there is something to warn of before an answer is given; false here. */
    virtual bool hasAnyWarnings() const;
};

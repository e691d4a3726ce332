#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>

/** One entry of the start screen: a proposal as far as its files tell of it. */
struct NyProposal
{
    Q_DECLARE_TR_FUNCTIONS(NyProposal)
public:
    enum class State {
        Complete,
        /** Its description cannot be used, or there is none; the book can be opened all the same. */
        NoDescription,
        /** Only its description is left. */
        NoProject
    };
    enum class Verb { Open, Delete };
    struct MenuEntry
    {
        Verb verb = Verb::Open;
        QString title;
        friend bool operator==(const MenuEntry &, const MenuEntry &) = default;
    };

    /** The project file's name in the proposal folder. */
    QString id;
    QString headline;
    QString subline;
    /** "12. – 26. Juli 2024"; empty if it is not known, or told by one of the two above. */
    QString dates;
    /** 0 where it is not known. */
    int photoCount = 0;
    int pageCount = 0;
    /** Invalid where it is not known. */
    QDateTime created;
    QString projectFile;
    QString previewFile;
    /** When the preview was written, in ms since 1970; -1 if there is none. */
    qint64 previewStampMs = -1;
    State state = State::Complete;
    bool isUnread = false;
    QList<MenuEntry> menu;

    /** "42 Fotos · 26 Seiten", as far as it is known. */
    QString extent() const;
    /** What is wrong with its files, for the user; empty if nothing is. */
    QString problem() const;
    bool canBeOpened() const { return state != State::NoProject; }

    friend bool operator==(const NyProposal &, const NyProposal &) = default;
};
Q_DECLARE_METATYPE(NyProposal)

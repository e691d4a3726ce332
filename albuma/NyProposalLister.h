#pragma once

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>

#include "NyProposal.h"

/** What is in the proposal folder at one moment. */
struct NyProposalListing
{
    enum class Folder { Readable, Missing, Unreadable };

    Folder folder = Folder::Missing;
    /** The folder's path as people read it. */
    QString folderPath;
    bool isFolderWritable = false;
    /** Whether the folder with the user's photos, local as it is, is not there. */
    bool arePicturesMissing = false;
    /** The newest first; without a date last. */
    QList<NyProposal> proposals;
    /** Whether an entry lacks a part, or has a preview, that a program may be writing at this moment. */
    bool isUnsettled = false;
};
Q_DECLARE_METATYPE(NyProposalListing)

/** Reads the proposal folder through the start screen's interface. Any thread; takes its time with thousands of proposals. */
class NyProposalLister
{
public:
    struct Request
    {
        /** When all proposals were taken as read. */
        QDateTime lastView;
        /** Ids of proposals that were opened since. */
        QSet<QString> openedIds;
        /** The folder with the user's photos; empty: not looked at. */
        QString picturesHome;
        friend bool operator==(const Request &, const Request &) = default;
    };

    /** No text of a description is shown longer than this. */
    static constexpr qsizetype LongestText = 200;

    static NyProposalListing list(const Request &request);
    /** Whether a description may name this as its project file: a name, no path, and no pattern for other files. */
    static bool isProjectId(const QString &id);
};

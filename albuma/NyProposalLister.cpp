#include "NyProposalLister.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <NyQuilloServiceSettings.h>
#include <NyStartScreenRecommendationsInterface.h>
#include <NyText.h>

#include "NyBookTitle.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

/** Copying writes a preview in place; one that was changed more recently than this may not be all there. */
constexpr qint64 LongestWriteMs = 5000;

/** Control characters, and those that turn the direction of everything behind them. */
bool breaksLines(QChar c)
{
    return c.category() == QChar::Other_Control || NyText::turnsDirection(c);
}

/** A text of a description on one line: whoever wrote the file, it must not break the window's layout. */
QString shownText(const QJsonValue &value)
{
    // Cut first: tidying up a hundred megabytes would take seconds.
    QString text = value.toString().left(4 * NyProposalLister::LongestText);
    std::replace_if(text.begin(), text.end(), breaksLines, QChar(u' '));
    text = text.simplified();
    if (text.size() <= NyProposalLister::LongestText)
        return text;
    return NyText::beginning(text, NyProposalLister::LongestText - 1).trimmed() + u'…';
}

/** The id that the entries of a description's menu are about, and the entries that the start screen can carry out. */
void readMenu(const QJsonArray &menu, NyProposal &proposal)
{
    for (const QJsonValue &value : menu) {
        const QString action = value[u"action"].toString();
        const qsizetype colon = action.indexOf(u':');
        const QString id = action.mid(colon + 1);
        const QStringView verb = QStringView(action).left(std::max<qsizetype>(colon, 0));
        if ((verb != u"open" && verb != u"delete") || !NyProposalLister::isProjectId(id))
            continue;
        if (proposal.id.isEmpty())
            proposal.id = id;
        if (proposal.id == id)
            proposal.menu.append({verb == u"open" ? NyProposal::Verb::Open : NyProposal::Verb::Delete, shownText(value[u"title"])});
    }
}

QDate shownDate(const QJsonValue &value)
{
    return QDate::fromString(value.toString().left(16), Qt::ISODate);
}

NyProposal fromDescription(const QJsonObject &description)
{
    NyProposal proposal;
    readMenu(description[u"menu"].toArray(), proposal);
    proposal.headline = shownText(description[u"headline"]);
    proposal.subline = shownText(description[u"subline"]);
    if (proposal.headline.isEmpty())
        proposal.headline = QFileInfo(proposal.id).completeBaseName();
    const QDate from = shownDate(description[u"dateFrom"]);
    const QDate to = shownDate(description[u"dateTo"]);
    proposal.dates = NyBookTitle::dateRange(from, to);
    // The builder tells them in one of the two, maybe in another language than today's.
    if (proposal.headline.contains(proposal.dates) || proposal.subline.contains(QString::number(to.year())))
        proposal.dates.clear();
    proposal.photoCount = std::max(0, description[u"photoCount"].toInt());
    proposal.pageCount = std::max(0, description[u"pageCount"].toInt());
    if (const int epoch = description[u"creationDateEpoch"].toInt(0); epoch > 0)
        proposal.created = QDateTime::fromSecsSinceEpoch(epoch);
    return proposal;
}

void addFiles(NyProposal &proposal)
{
    const auto &settings = NyQuilloServiceSettings::instance();
    proposal.projectFile = settings.projectFile(proposal.id);
    const QFileInfo preview(settings.projectIconFile(proposal.id));
    if (!preview.isFile())
        return;
    proposal.previewFile = preview.absoluteFilePath();
    proposal.previewStampMs = preview.lastModified().toMSecsSinceEpoch();
}

}

bool NyProposalLister::isProjectId(const QString &id)
{
    if (!id.endsWith(u".nqp") && !id.endsWith(u".nqpx"))
        return false;
    return std::none_of(id.cbegin(), id.cend(), [](QChar c) { return c == u'/' || c == u'*' || c == u'?' || c == u'[' || c.isNull(); });
}

NyProposalListing NyProposalLister::list(const Request &request)
{
    const auto &settings = NyQuilloServiceSettings::instance();
    NyProposalListing listing;
    const QFileInfo folder(QDir::cleanPath(settings.bookProposalFileFolder()));
    listing.folderPath = QDir::toNativeSeparators(folder.absoluteFilePath());
    listing.arePicturesMissing = !request.picturesHome.isEmpty() && !QFileInfo(request.picturesHome).isDir();
    if (!folder.exists())
        return listing;
    listing.folder = NyProposalListing::Folder::Unreadable;
    if (!folder.isDir() || !folder.isReadable() || !folder.isExecutable())
        return listing;
    listing.folder = NyProposalListing::Folder::Readable;
    listing.isFolderWritable = folder.isWritable();

    const QByteArray descriptions = NyStartScreenRecommendationsInterface().getRecommendations().toUtf8();
    QHash<QString, QFileInfo> projects;
    // After the descriptions, of which the project file is the last part to be written.
    const QFileInfoList files = NyStartScreenRecommendationsInterface::projectFiles();
    for (const QFileInfo &file : files)
        projects.insert(file.fileName(), file);
    QSet<QString> seen;
    const QJsonArray array = QJsonDocument::fromJson(descriptions).array();
    for (const QJsonValue &value : array) {
        NyProposal proposal = fromDescription(value.toObject());
        // A description without an id says nothing that its project file, if it has one, does not.
        if (proposal.id.isEmpty() || seen.contains(proposal.id))
            continue;
        seen.insert(proposal.id);
        addFiles(proposal);
        const auto project = projects.constFind(proposal.id);
        if (project == projects.cend() || !project->isFile()) {
            proposal.state = NyProposal::State::NoProject;
            listing.isUnsettled = true;
        }
        listing.proposals.append(proposal);
    }
    for (auto project = projects.cbegin(); project != projects.cend(); ++project) {
        if (seen.contains(project.key()))
            continue;
        NyProposal proposal;
        proposal.id = project.key();
        proposal.headline = shownText(project->completeBaseName());
        proposal.created = project->lastModified();
        proposal.state = project->isFile() ? NyProposal::State::NoDescription : NyProposal::State::NoProject;
        addFiles(proposal);
        listing.proposals.append(proposal);
        listing.isUnsettled = true;
    }
    const qint64 settledMs = QDateTime::currentMSecsSinceEpoch() - LongestWriteMs;
    for (NyProposal &proposal : listing.proposals) {
        if (proposal.previewStampMs > settledMs)
            listing.isUnsettled = true;
        const auto project = projects.constFind(proposal.id);
        proposal.isUnread = project != projects.cend() && NyStartScreenRecommendationsInterface::isUnread(*project, request.lastView)
            && !request.openedIds.contains(proposal.id);
    }
    std::stable_sort(listing.proposals.begin(), listing.proposals.end(), [](const NyProposal &a, const NyProposal &b) {
        if (a.created != b.created)
            return a.created.isValid() && (!b.created.isValid() || a.created > b.created);
        return a.id < b.id;
    });
    return listing;
}

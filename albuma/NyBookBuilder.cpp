#include "NyBookBuilder.h"

#include <limits>

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentMap>

#include <NyBookProjectFile.h>
#include <NyFileHandler.h>
#include <NyJsonParser.h>
#include <NyPreInstalledDesignElementRegistry.h>

#include "NyBookComposer.h"
#include "NyBookTitle.h"
#include "NyFotoAnalyser.h"
#include "NyFotoSelection.h"
#include "NyPageLayout.h"
#include "NyProposalCompanions.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

NyDesignStyle chosenStyle(const QStringList &ids)
{
    QList<NyDesignElementID> wanted;
    for (const QString &id : ids)
        wanted.append(NyDesignElementID(id));
    return NyPreInstalledDesignElementRegistry::instance().firstKnownStyle(wanted);
}

QStringList foldersOf(const QList<NyFotoFacts> &photos)
{
    QSet<QString> folders;
    for (const NyFotoFacts &facts : photos)
        folders.insert(QFileInfo(facts.url.toLocalFile()).absolutePath());
    return QStringList(folders.cbegin(), folders.cend());
}

}

NyBookBuilder::NyBookBuilder(const NyBuilderRequest &request)
    : m_request(request)
    , m_target(QFileInfo(request.targetPath).absoluteFilePath())
{
}

QString NyBookBuilder::checkTarget() const
{
    if (m_request.targetPath.isEmpty())
        return tr("Es ist kein Ziel für den Vorschlag angegeben.");
    const QString path = QDir::toNativeSeparators(m_target.absoluteFilePath());
    if (!QFileInfo(m_target.absolutePath()).isDir())
        return tr("Der Ordner für den Vorschlag \"%1\" ist nicht vorhanden.").arg(path);
    for (const QFileInfo &file : {m_target, NyProposalCompanions::previewOf(m_target), NyProposalCompanions::descriptionOf(m_target)}) {
        if (file.exists() || file.isSymLink())
            return tr("Die Datei \"%1\" ist schon vorhanden.").arg(QDir::toNativeSeparators(file.absoluteFilePath()));
    }
    return {};
}

QList<NyFotoFacts> NyBookBuilder::analyse(const NyFotoList &photos)
{
    QList<NyFoto> distinct;
    QSet<QString> seen;
    for (const NyFoto &foto : photos) {
        if (seen.contains(foto.location()))
            continue;
        seen.insert(foto.location());
        distinct.append(foto);
    }
    qInfo() << "builder: analysing" << distinct.size() << "photos";
    QThreadPool pool;
    pool.setMaxThreadCount(std::max(1, m_request.backgroundJobs));
    return QtConcurrent::blockingMapped<QList<NyFotoFacts>>(
        &pool, distinct, [this](const NyFoto &foto) { return m_isCancelled ? NyFotoFacts() : NyFotoAnalyser::analyse(foto); });
}

QByteArray NyBookBuilder::description(const NyBookProject &project, const QList<NyFotoFacts> &photos) const
{
    QJsonObject object{
        // Readers take the moment as a 32-bit number and count what is beyond as 0.
        {u"creationDateEpoch"_s, std::min<qint64>(project.creationDateEpoch, std::numeric_limits<qint32>::max())},
        {u"menu"_s, NyJsonParser::createMenuJson(m_target.fileName())},
        {u"occasions"_s, QJsonArray::fromStringList(project.occasions)},
        {u"dateFrom"_s, photos.constFirst().captureTime.date().toString(Qt::ISODate)},
        {u"dateTo"_s, photos.constLast().captureTime.date().toString(Qt::ISODate)},
        {u"style"_s, project.style.toString()},
    };
    NyProposalCompanions::describe(object, project);
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QString NyBookBuilder::write(const NyBookProject &project, const QByteArray &preview, const QByteArray &description)
{
    const struct
    {
        QFileInfo file;
        QByteArray content;
    } parts[] = {
        {NyProposalCompanions::previewOf(m_target), preview},
        {NyProposalCompanions::descriptionOf(m_target), description},
        {m_target, NyBookProjectFile::toJson(project)},
    };
    QString error = checkTarget();
    QFileInfoList written;
    for (const auto &part : parts) {
        if (m_isCancelled)
            error = tr("Der Vorschlag wurde abgebrochen.");
        if (!error.isEmpty())
            break;
        if (NyFileHandler::writeBinaryFile(part.file, part.content))
            written.append(part.file);
        else
            error = tr("Die Datei \"%1\" kann nicht geschrieben werden.").arg(QDir::toNativeSeparators(part.file.absoluteFilePath()));
    }
    if (!error.isEmpty() && !NyFileHandler::deleteFiles(written))
        qWarning() << "builder: remains of the proposal stay in" << m_target.absolutePath();
    return error;
}

QString NyBookBuilder::build(const NyFotoList &photos)
{
    QString error = checkTarget();
    if (!error.isEmpty())
        return error;
    if (photos.isEmpty())
        return tr("Für den Vorschlag sind keine Fotos hinterlegt.");
    const QList<NyFotoFacts> facts = analyse(photos);
    if (m_isCancelled)
        return tr("Der Vorschlag wurde abgebrochen.");
    const NyFotoSelection::Result selection = NyFotoSelection::select(facts, MaximumPhotos);
    qInfo() << "builder: photos" << photos.count() << "chosen" << selection.photos.size() << "unreadable" << selection.unreadable
            << "screenshots" << selection.screenshots << "unusable" << selection.unusable << "near-duplicates" << selection.nearDuplicates
            << "surplus" << selection.surplus;
    if (selection.photos.isEmpty())
        return tr("Keines der %1 Fotos eignet sich für ein Buch.").arg(photos.count());

    NyBookComposer::Request request;
    request.photos = selection.photos;
    request.words = NyBookTitle::forBook(foldersOf(selection.photos), m_request.picturesHome, m_request.occasions,
        selection.photos.constFirst().captureTime.date(), selection.photos.constLast().captureTime.date());
    request.style = chosenStyle(m_request.recommendedStyles);
    request.occasions = m_request.occasions;
    request.creationDateEpoch = QDateTime::currentSecsSinceEpoch();
    const NyBookProject project = NyBookComposer::compose(request);
    if (const int count = NyBookComposer::lowResolutionCount(project); count > 0)
        qInfo() << "builder:" << count << "photos are printed with less than" << NyPageLayout::RecommendedDpi << "dpi";

    const QByteArray preview = NyProposalCompanions::preview(project, request.style);
    if (preview.isEmpty())
        return tr("Die Vorschau des Buchs kann nicht gezeichnet werden.");
    error = write(project, preview, description(project, selection.photos));
    if (error.isEmpty())
        qInfo() << "builder: book" << m_target.absoluteFilePath() << "pages" << project.pages.size();
    return error;
}

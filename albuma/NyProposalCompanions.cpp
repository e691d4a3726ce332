#include "NyProposalCompanions.h"

#include <algorithm>

#include <QBuffer>
#include <QDebug>
#include <QJsonDocument>

#include <NyFileHandler.h>
#include <NyImageLoader.h>
#include <NyJsonParser.h>
#include <NyPreInstalledDesignElementRegistry.h>

#include "NyBookComposer.h"
#include "NyBookRenderer.h"

using namespace Qt::Literals::StringLiterals;

QFileInfo NyProposalCompanions::descriptionOf(const QFileInfo &projectFile)
{
    return QFileInfo(projectFile.absoluteFilePath() + u".json"_s);
}

QFileInfo NyProposalCompanions::previewOf(const QFileInfo &projectFile)
{
    return QFileInfo(projectFile.absoluteFilePath() + u".png"_s);
}

void NyProposalCompanions::describe(QJsonObject &description, const NyBookProject &project)
{
    description.insert(u"headline"_s, project.title);
    description.insert(u"subline"_s, project.subtitle);
    description.insert(u"photoCount"_s, project.photoCount());
    description.insert(u"pageCount"_s, int(project.pages.size()));
    description.insert(u"lowResolutionCount"_s, NyBookComposer::lowResolutionCount(project));
}

QByteArray NyProposalCompanions::preview(const NyBookProject &project, const NyDesignStyle &style)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !NyBookRenderer::coverImage(project, style, PreviewWidthPx).save(&buffer, "PNG"))
        return {};
    return png;
}

bool NyProposalCompanions::updateDescription(const QFileInfo &projectFile, const NyBookProject &project)
{
    const QFileInfo file = descriptionOf(projectFile);
    if (!file.exists())
        return true;
    const QJsonDocument document = NyJsonParser::loadDocument(file);
    if (!document[u"headline"].isString()) {
        qWarning().noquote() << "no description of a proposal, left as it is:" << file.absoluteFilePath();
        return true;
    }
    QJsonObject description = document.object();
    describe(description, project);
    return description == document.object()
        || NyFileHandler::writeBinaryFile(file, QJsonDocument(description).toJson(QJsonDocument::Indented));
}

bool NyProposalCompanions::updatePreview(const QFileInfo &projectFile, const NyBookProject &project)
{
    const QFileInfo file = previewOf(projectFile);
    if (!file.exists())
        return true;
    const QList<NyPlacedFoto> &photos = project.cover.photos;
    const bool areReadable = std::all_of(photos.cbegin(), photos.cend(),
        [](const NyPlacedFoto &foto) { return !NyImageLoader::instance().orientedSize(foto.url.toLocalFile()).isEmpty(); });
    if (!areReadable) {
        qWarning().noquote() << "preview left as it is, the cover's photo is missing:" << file.absoluteFilePath();
        return false;
    }
    const QByteArray png = preview(project, NyPreInstalledDesignElementRegistry::instance().firstKnownStyle({project.style}));
    if (png.isEmpty()) {
        qWarning().noquote() << "preview cannot be drawn:" << file.absoluteFilePath();
        return false;
    }
    return NyFileHandler::writeBinaryFile(file, png);
}

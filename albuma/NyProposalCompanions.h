#pragma once

#include <QByteArray>
#include <QFileInfo>
#include <QJsonObject>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

/** The files beside a proposal's project file, from which the start screen knows it. Stateless, any thread. */
class NyProposalCompanions
{
public:
    static constexpr int PreviewWidthPx = 960;

    static QFileInfo descriptionOf(const QFileInfo &projectFile);
    static QFileInfo previewOf(const QFileInfo &projectFile);

    /** Sets what a description says of the book's words and extent; its other keys stay. */
    static void describe(QJsonObject &description, const NyBookProject &project);
    /** The cover as a PNG; empty if it cannot be drawn. */
    static QByteArray preview(const NyBookProject &project, const NyDesignStyle &style);

    /** Brings a description that is there up to date; a broken one is left as it is, with a warning. False if it could not be written. */
    static bool updateDescription(const QFileInfo &projectFile, const NyBookProject &project);
    /**
     * Draws a preview that is there anew. False, with a warning and the old one untouched, if it could not be drawn or written, or if
     * the cover's photo cannot be read: a proposal without its picture would be of less use than one with its old title.
     */
    static bool updatePreview(const QFileInfo &projectFile, const NyBookProject &project);
};

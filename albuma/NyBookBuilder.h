#pragma once

#include <atomic>

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

#include <NyBookProject.h>
#include <NyFotoList.h>

#include "NyFotoFacts.h"

/** What the builder was asked for on the command line. */
struct NyBuilderRequest
{
    /** The project file to make; preview and description get ".png" and ".json" behind its whole name. */
    QString targetPath;
    /** Design ids, the preferred one first. */
    QStringList recommendedStyles;
    /** Occasion keywords, the likeliest first. */
    QStringList occasions;
    /** Worker threads; at least one is used. */
    int backgroundJobs = 1;
    /** Never taken as an event's name. */
    QString picturesHome;
};

/**
 * Builds one proposal: a book of the given photos as three files, the project file last.
 *
 * One object builds once. build() blocks and may run on any thread; cancel() may be called from any other.
 */
class NyBookBuilder
{
    Q_DECLARE_TR_FUNCTIONS(NyBookBuilder)
public:
    /** The most photos that a proposal takes. */
    static constexpr int MaximumPhotos = 160;

    explicit NyBookBuilder(const NyBuilderRequest &request);

    /**
     * Returns an empty text when the book is there, else the reason for people to read. Then none of the three files was left behind;
     * files that were there before are never touched.
     */
    QString build(const NyFotoList &photos);

    /** Makes build() end soon and without a book. */
    void cancel() { m_isCancelled = true; }

private:
    QString checkTarget() const;
    QList<NyFotoFacts> analyse(const NyFotoList &photos);
    QByteArray description(const NyBookProject &project, const QList<NyFotoFacts> &photos) const;
    QString write(const NyBookProject &project, const QByteArray &preview, const QByteArray &description);

    NyBuilderRequest m_request;
    QFileInfo m_target;
    std::atomic<bool> m_isCancelled = false;
};

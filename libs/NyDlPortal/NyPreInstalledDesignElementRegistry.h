#pragma once

#include "nydlportal_export.h"

#include <QList>

#include <NyDesignElementIDSet.h>
#include <NyDesignStyle.h>
#include <NySingleton.h>

class QDomElement;

/**
 * The designs that came with the installation: the file "designs.xml" as NyDirectoryConfig finds it, with a copy built
 * into the program. Read once at construction; thread-safe, as nothing changes afterwards.
 *
 * A file that cannot be read is reported, and the built-in copy takes its place. A design without a usable id, or with one that was
 * there before, is reported with its line and left out; a colour that is none is reported and keeps its built-in value.
 */
class NYDLPORTAL_EXPORT NyPreInstalledDesignElementRegistry : public NySingleton<NyPreInstalledDesignElementRegistry>
{
public:
    NyPreInstalledDesignElementRegistry();
    ~NyPreInstalledDesignElementRegistry() override;

    /** The ids of the designs released for proposals, in the order of the file. */
    NyDesignElementIDSet quilloDesignElementIDs() const;
    /** All designs, in the order of the file; never empty. */
    const QList<NyDesignStyle> &styles() const { return m_styles; }
    /** The design of that id; an invalid one if there is none. */
    NyDesignStyle style(const NyDesignElementID &id) const;
    /** The first design of @p wanted that is known, else defaultStyle(). */
    NyDesignStyle firstKnownStyle(const QList<NyDesignElementID> &wanted) const;
    /** The first design released for proposals, else the first of all. */
    NyDesignStyle defaultStyle() const;

private:
    void load(const QString &path);
    void addStyle(const QDomElement &element, const QString &path);

    QList<NyDesignStyle> m_styles;
};

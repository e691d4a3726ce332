#pragma once

#include "nymodelbase_export.h"

#include <QHashFunctions>
#include <QString>

/** The name by which books, configuration and command lines speak of one design element. Compared case sensitive. */
class NYMODELBASE_EXPORT NyDesignElementID
{
public:
    NyDesignElementID() = default;
    /** Blanks around @p id are dropped. */
    explicit NyDesignElementID(const QString &id);

    /** False for an empty id and for one with a blank or a comma in it, which a comma-joined list could not carry. */
    bool isValid() const;
    const QString &toString() const { return m_id; }

    friend bool operator==(const NyDesignElementID &a, const NyDesignElementID &b) { return a.m_id == b.m_id; }
    friend bool operator!=(const NyDesignElementID &a, const NyDesignElementID &b) { return a.m_id != b.m_id; }
    friend bool operator<(const NyDesignElementID &a, const NyDesignElementID &b) { return a.m_id < b.m_id; }
    friend size_t qHash(const NyDesignElementID &id, size_t seed = 0) { return qHash(id.m_id, seed); }

private:
    QString m_id;
};

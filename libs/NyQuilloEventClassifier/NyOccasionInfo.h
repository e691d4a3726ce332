#pragma once

#include <QtCore/QString>

#include "nyquilloeventclassifier_export.h"

/** One occasion that a set of photos may show. */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyOccasionInfo
{
public:
    NyOccasionInfo() = default;
    /**
     * @param keyword stable lower-case English word, such as "wedding"
     * @param source what told of the occasion, such as "title" or "vision"
     * @param probability 0 to 1
     */
    NyOccasionInfo(const QString &keyword, const QString &source, double probability);
    NyOccasionInfo(const NyOccasionInfo &) = default;
    NyOccasionInfo(NyOccasionInfo &&) = default;
    NyOccasionInfo &operator=(const NyOccasionInfo &) = default;
    NyOccasionInfo &operator=(NyOccasionInfo &&) = default;
    virtual ~NyOccasionInfo();

    QString keyword() const { return m_keyword; }
    QString source() const { return m_source; }
    double probability() const { return m_probability; }

    /** For logs: "wedding (title, 0.87)". */
    QString description() const;

    bool operator==(const NyOccasionInfo &other) const;

private:
    QString m_keyword;
    QString m_source;
    double m_probability = 0.0;
};

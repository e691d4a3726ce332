#pragma once

#include <QtCore/QString>

#include "nycore_export.h"

/** The business customer that an installation belongs to. */
class NYCORE_EXPORT NyKeyAccountId
{
public:
    explicit NyKeyAccountId(int id = 0, bool testClient = false);

    int id() const { return m_id; }
    QString toString() const;
    bool isTestClient() const { return m_testClient; }

    bool operator==(const NyKeyAccountId &other) const { return m_id == other.m_id; }

private:
    int m_id;
    bool m_testClient;
};

#pragma once

#include <QtCore/QString>

#include "NyKeyAccountId.h"
#include "NySingleton.h"
#include "nycore_export.h"

/**
 * The facts of this installation: the key account's id and name, and whether it is a test client.
 *
 * Read from the file "installation.xml" when the object is made; a fact that the file does not tell, or that cannot be
 * read, keeps its built-in default. Read-only afterwards, so any thread may ask.
 */
class NYCORE_EXPORT NyKeyAccount : public NySingleton<NyKeyAccount>
{
public:
    NyKeyAccount();
    ~NyKeyAccount() override;

    NyKeyAccountId keyAccountId() const { return m_keyAccountId; }
    QString name() const { return m_name; }
    bool isTestClient() const { return m_keyAccountId.isTestClient(); }

private:
    void readFile(const QString &path);

    NyKeyAccountId m_keyAccountId;
    QString m_name;
};

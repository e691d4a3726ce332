#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

#include "NySingleton.h"
#include "nyfoto_export.h"

/** Knows the places where photos lie, as far as their names go. Thread-safe. */
class NYFOTO_EXPORT NyFotoDatabaseRegistry : public NySingleton<NyFotoDatabaseRegistry>
{
public:
    NyFotoDatabaseRegistry();
    ~NyFotoDatabaseRegistry() override;

    /**
     * The text by which the user knows the location: for a folder or file in the pictures home or the home folder the path from there,
     * otherwise the whole path; for other URLs their decoded text without a password.
     */
    QString humanReadable(const QUrl &url) const;
};

#pragma once

#include "NyImageMetaDataBackend.h"

/** NyImageMetaDataBackend on exiv2. */
class NyImageMetaDataBackendExiv2 final : public NyImageMetaDataBackend
{
public:
    NyImageMetaDataBackendExiv2();

    NyImageMetaData metaData(const QByteArray &path, const QByteArray &sidecar, QString &reason) const override;
    std::optional<QString> sidecarExtension(const QByteArray &sidecar, QString &reason) const override;
    QByteArray preview(const QByteArray &path, int wantedPx, QString &reason) const override;
};

#pragma once

#include "NyHeifBackend.h"

/** NyHeifBackend on libheif. */
class NyHeifBackendLibheif final : public NyHeifBackend
{
public:
    QSize size(const QByteArray &path, QString &reason) const override;
    QImage image(const QByteArray &path, const QSize &wanted, qint64 maximumPixels, QString &reason) const override;
};

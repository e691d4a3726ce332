#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "NyGeoPosition.h"
#include "NyImageMetaData.h"
#include "nyfoto_export.h"

/** What a photo's file says of itself. Value type; what the file does not tell has the default that each operation names. */
class NYFOTO_EXPORT NyFotoMetaData
{
public:
    NyFotoMetaData() = default;
    explicit NyFotoMetaData(const NyImageMetaData &metaData);

    /** Whether the file could be read at all. */
    bool isValid() const { return m_data.isRead; }

    /** 1 when no digital zoom was used or none is recorded. */
    double digitalZoomRatio() const { return m_data.digitalZoomRatio; }
    /** -1 (rejected) to 5; 0 when there is none. The family's own rating goes before the one that other programs wrote. */
    int rating() const;
    NyGeoPosition geoPosition() const;
    /** When the photo was taken, as the clock on the wall showed it (see NyFotoTime); invalid when not recorded. */
    QDateTime captureTime() const;

    QString cameraMake() const { return m_data.cameraMake; }
    QString cameraModel() const { return m_data.cameraModel; }
    QString software() const { return m_data.software; }
    QString title() const { return m_data.title; }
    QString description() const { return m_data.description; }
    QString userComment() const { return m_data.userComment; }
    QStringList keywords() const { return m_data.keywords; }
    /** Seconds; 0 when unknown, here and below. */
    double exposureTime() const { return m_data.exposureTimeS; }
    double fNumber() const { return m_data.fNumber; }
    double focalLengthMm() const { return m_data.focalLengthMm; }
    int isoSpeed() const { return m_data.isoSpeed; }

private:
    NyImageMetaData m_data;
};

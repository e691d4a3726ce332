#pragma once

#include <limits>
#include <optional>

#include <QtCore/QList>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QStringList>

/** A point in time as a picture's metadata spells it. */
struct NyImageTimeText
{
    QString dateTime; /**< EXIF ("2024:07:14 18:30:05") or ISO ("2024-07-14T18:30:05.25+02:00") form */
    QString subSeconds; /**< decimal digits behind the point; may be empty */
    QString offset; /**< "+02:00"; empty when unknown */
};

/** What a picture file says of itself in EXIF, IPTC and XMP. Plain value. */
struct NyImageMetaData
{
    bool isRead = false; /**< whether the file was understood; the other fields keep their defaults otherwise */
    QSize storedSizePx; /**< before the orientation is applied; empty when unknown */
    int orientation = 1; /**< EXIF 2.32, tag 0x0112: 1 to 8 */
    QList<NyImageTimeText> captureTimes; /**< most trusted first */
    double latitude = std::numeric_limits<double>::quiet_NaN(); /**< degrees, south negative */
    double longitude = std::numeric_limits<double>::quiet_NaN(); /**< degrees, west negative */
    std::optional<int> rating; /**< -1 (rejected) to 5 */
    std::optional<int> ownRating; /**< the family's own property, -1 to 5 */
    double digitalZoomRatio = 1.0;
    double exposureTimeS = 0.0; /**< 0 when unknown, here and below */
    double fNumber = 0.0;
    double focalLengthMm = 0.0;
    int isoSpeed = 0;
    QString cameraMake;
    QString cameraModel;
    QString software;
    QString title;
    QString description;
    QString userComment;
    QStringList keywords;
};

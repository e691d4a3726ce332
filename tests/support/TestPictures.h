#pragma once

#include <map>
#include <string>

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

/** Makes pictures with known content and metadata for the tests of the photo libraries. */
namespace TestPictures
{

/** Upright, the corners of every picture are: top left red, top right green, bottom left blue, bottom right white. */
QImage corners(const QSize &size);

/** "rgbw" for the corners as they should be: top left, top right, bottom left, bottom right; "?" for any other colour. */
QString cornerLetters(const QImage &image);

/** The pixels of corners() as a camera stores them that is held so that the EXIF orientation is @p orientation. */
QImage cornersStored(const QSize &uprightSize, int orientation);

/** EXIF, IPTC and XMP fields by exiv2's names, with their values as text. */
using Fields = std::map<std::string, std::string>;

/** Adds fields to a picture file; false when exiv2 refuses. */
bool addFields(const QString &path, const Fields &fields);

/** A JPEG of corners() stored in the orientation, with the fields. */
bool writeJpeg(const QString &path, const QSize &uprightSize, int orientation = 1, const Fields &fields = {});

/**
 * corners() as HEIC or AVIF, on request with a thumbnail of at most that size. The thumbnail is the mirror image, "grwb", so that one
 * can tell which of the two was decoded.
 */
bool writeHeif(const QString &path, const QSize &size, int thumbnailPx = 0, bool av1 = false);

/**
 * corners() as a HEIC that is turned by the file's own rotation to orientation @p ownOrientation, and says @p exifOrientation in its
 * EXIF block, which readers must ignore.
 */
bool writeTurnedHeif(const QString &path, const QSize &uprightSize, int ownOrientation, int exifOrientation);

/** Whether this machine can write such a file. */
bool canWriteHeif(bool av1);

/** A file as raw formats are: a TIFF directory with a size, an orientation and an embedded JPEG, and one with a thumbnail. */
QByteArray rawFile(const QSize &sensorSize, int orientation, const QByteArray &jpeg, const QByteArray &thumbnail = {});

QByteArray jpegBytes(const QImage &image);

bool writeBytes(const QString &path, const QByteArray &bytes);
QByteArray readBytes(const QString &path);

/** The folder of real photographs that the environment names (NY_PHOTO_SAMPLES); empty without one. */
QString sampleFolder();

}

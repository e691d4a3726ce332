#include "NyHeifBackendLibheif.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <vector>

#include <libheif/heif.h>

#include <QtGui/QColorSpace>

namespace
{

struct Release
{
    void operator()(heif_context *context) const { heif_context_free(context); }
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image *image) const { heif_image_release(image); }
    void operator()(heif_decoding_options *options) const { heif_decoding_options_free(options); }
};
using Context = std::unique_ptr<heif_context, Release>;
using Handle = std::unique_ptr<heif_image_handle, Release>;
using Image = std::unique_ptr<heif_image, Release>;
using Options = std::unique_ptr<heif_decoding_options, Release>;

bool succeeded(const heif_error &error, QString &reason)
{
    if (error.code == heif_error_Ok)
        return true;
    reason = QString::fromUtf8(error.message);
    return false;
}

QSize sizeOf(const heif_image_handle *handle)
{
    return {heif_image_handle_get_width(handle), heif_image_handle_get_height(handle)};
}

/** The file stays open in @p context, which must outlive the handle. */
Handle primaryPicture(Context &context, const QByteArray &path, QString &reason)
{
    context.reset(heif_context_alloc());
    if (!succeeded(heif_context_read_from_file(context.get(), path.constData(), nullptr), reason))
        return {};
    heif_image_handle *handle = nullptr;
    if (!succeeded(heif_context_get_primary_image_handle(context.get(), &handle), reason))
        return {};
    return Handle(handle);
}

/** The smallest thumbnail that is large enough and shows all of the picture. Null without one. */
Handle fittingThumbnail(const heif_image_handle *picture, const QSize &wanted)
{
    const QSize full = sizeOf(picture);
    if (wanted.isEmpty() || (full.width() <= wanted.width() && full.height() <= wanted.height()))
        return {};
    const QSize needed = full.scaled(wanted, Qt::KeepAspectRatio);
    std::vector<heif_item_id> ids(std::size_t(heif_image_handle_get_number_of_thumbnails(picture)));
    heif_image_handle_get_list_of_thumbnail_IDs(picture, ids.data(), int(ids.size()));
    Handle best;
    for (const heif_item_id id : ids) {
        heif_image_handle *raw = nullptr;
        if (heif_image_handle_get_thumbnail(picture, id, &raw).code != heif_error_Ok)
            continue;
        Handle thumbnail(raw);
        const QSize size = sizeOf(thumbnail.get());
        if (size.width() < needed.width() || size.height() < needed.height())
            continue;
        // Other proportions, by more than rounding, mean that it was cropped or not turned.
        const double ratio = double(size.width()) * full.height() / (double(size.height()) * full.width());
        if (ratio < 0.98 || ratio > 1.02)
            continue;
        if (!best || size.width() < sizeOf(best.get()).width())
            best = std::move(thumbnail);
    }
    return best;
}

/** Also for a thumbnail, the colour space of the picture that it belongs to. */
QColorSpace colorSpaceOf(const heif_image_handle *picture)
{
    const std::size_t profileSize = heif_image_handle_get_raw_color_profile_size(picture);
    if (profileSize > 0) {
        QByteArray profile(qsizetype(profileSize), Qt::Uninitialized);
        if (heif_image_handle_get_raw_color_profile(picture, profile.data()).code == heif_error_Ok) {
            const QColorSpace space = QColorSpace::fromIccProfile(profile);
            if (space.isValid())
                return space;
        }
    }
    heif_color_profile_nclx *nclx = nullptr;
    if (heif_image_handle_get_nclx_color_profile(picture, &nclx).code != heif_error_Ok || !nclx)
        return {};
    const heif_color_primaries primaries = nclx->color_primaries;
    heif_nclx_color_profile_free(nclx);
    return primaries == heif_color_primaries_SMPTE_EG_432_1 ? QColorSpace(QColorSpace::DisplayP3) : QColorSpace();
}

QImage decoded(const heif_image_handle *handle, QString &reason)
{
    const bool hasAlpha = heif_image_handle_has_alpha_channel(handle);
    const Options options(heif_decoding_options_alloc());
    options->convert_hdr_to_8bit = 1;
    if (options->version >= 3)
        options->strict_decoding = 1;
    heif_image *raw = nullptr;
    const heif_error error = heif_decode_image(
        handle, &raw, heif_colorspace_RGB, hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, options.get());
    const Image picture(raw);
    if (!succeeded(error, reason))
        return {};
    int stride = 0;
    const uint8_t *plane = heif_image_get_plane_readonly(picture.get(), heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(picture.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(picture.get(), heif_channel_interleaved);
    QImage image(width, height, hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    if (!plane || image.isNull()) {
        reason = QStringLiteral("there is not enough memory for it");
        return {};
    }
    const std::size_t rowBytes = std::size_t(width) * (hasAlpha ? 4 : 3);
    for (int y = 0; y < height; ++y)
        std::memcpy(image.scanLine(y), plane + std::ptrdiff_t(y) * stride, rowBytes);
    return image;
}

}

QSize NyHeifBackendLibheif::size(const QByteArray &path, QString &reason) const
{
    try {
        Context context;
        const Handle picture = primaryPicture(context, path, reason);
        return picture ? sizeOf(picture.get()) : QSize();
    } catch (const std::exception &exception) {
        reason = QString::fromLocal8Bit(exception.what());
        return {};
    }
}

QImage NyHeifBackendLibheif::image(const QByteArray &path, const QSize &wanted, qint64 maximumPixels, QString &reason) const
{
    try {
        Context context;
        const Handle picture = primaryPicture(context, path, reason);
        if (!picture)
            return {};
        const QSize size = sizeOf(picture.get());
        if (qint64(size.width()) * size.height() > maximumPixels) {
            reason = QStringLiteral("it claims to have %1 x %2 pixels").arg(size.width()).arg(size.height());
            return {};
        }
        QImage image;
        if (const Handle thumbnail = fittingThumbnail(picture.get(), wanted)) {
            QString ignored;
            image = decoded(thumbnail.get(), ignored);
        }
        if (image.isNull())
            image = decoded(picture.get(), reason);
        if (!image.isNull())
            image.setColorSpace(colorSpaceOf(picture.get()));
        return image;
    } catch (const std::exception &exception) {
        reason = QString::fromLocal8Bit(exception.what());
        return {};
    }
}

extern "C" Q_DECL_EXPORT NyHeifBackend *NY_IMAGE_BACKEND_FUNCTION()
{
    static NyHeifBackendLibheif backend;
    return &backend;
}

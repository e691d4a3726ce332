#pragma once

#include <utility>

#include <QtGui/QImage>

/** A photo's picture, ready to be shown: upright and scaled. Null when it could not be read. Value type, implicitly shared. */
class NyDrawable
{
public:
    NyDrawable() = default;
    explicit NyDrawable(QImage image)
        : m_image(std::move(image))
    {
    }

    bool isNull() const { return m_image.isNull(); }
    const QImage &image() const { return m_image; }

private:
    QImage m_image;
};

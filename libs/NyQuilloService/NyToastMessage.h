#pragma once

#include "nyquilloservice_export.h"

#include <QFileInfo>
#include <QString>
#include <QUrl>

/** One notification. Never changes after it was made. */
class NYQUILLOSERVICE_EXPORT NyToastMessage
{
public:
    /** `image` may be empty, `id` is the project's or empty, `showLaunchButtons` offers "now" and "later". */
    NyToastMessage(const QString &title, const QString &description, const QFileInfo &image, const QString &id, bool showLaunchButtons);
    virtual ~NyToastMessage();
    NyToastMessage(const NyToastMessage &other);
    NyToastMessage &operator=(const NyToastMessage &other);
    NyToastMessage(NyToastMessage &&other) noexcept;
    NyToastMessage &operator=(NyToastMessage &&other) noexcept;

    QString title() const { return m_title; }
    QString description() const { return m_description; }
    QFileInfo image() const { return m_image; }
    QString id() const { return m_id; }
    bool showLaunchButtons() const { return m_showLaunchButtons; }

    /** Whether the notification belongs to a proposal, which makes earlier ones out of date. */
    bool clearPreviousMessages() const;
    /** The image as a local URL, not valid without an image. */
    QUrl imageUrl() const;
    /** For people who look for faults: several lines, without the image. */
    QString toString() const;

private:
    QString m_title;
    QString m_description;
    QFileInfo m_image;
    QString m_id;
    bool m_showLaunchButtons;
};

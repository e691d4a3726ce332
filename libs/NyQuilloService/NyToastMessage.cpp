#include "NyToastMessage.h"

NyToastMessage::NyToastMessage(
    const QString &title, const QString &description, const QFileInfo &image, const QString &id, bool showLaunchButtons)
    : m_title(title)
    , m_description(description)
    , m_image(image)
    , m_id(id)
    , m_showLaunchButtons(showLaunchButtons)
{
}

NyToastMessage::~NyToastMessage() = default;
NyToastMessage::NyToastMessage(const NyToastMessage &other) = default;
NyToastMessage &NyToastMessage::operator=(const NyToastMessage &other) = default;
NyToastMessage::NyToastMessage(NyToastMessage &&other) noexcept = default;
NyToastMessage &NyToastMessage::operator=(NyToastMessage &&other) noexcept = default;

bool NyToastMessage::clearPreviousMessages() const
{
    return !m_id.isEmpty();
}

QUrl NyToastMessage::imageUrl() const
{
    return QUrl::fromLocalFile(m_image.absoluteFilePath());
}

QString NyToastMessage::toString() const
{
    return QStringLiteral("Toast Message") + QStringLiteral("\nTitle           = ") + m_title + QStringLiteral("\nDescription     = ")
        + m_description + QStringLiteral("\nId              = ") + m_id + QStringLiteral("\nShowing Buttons = ")
        + (m_showLaunchButtons ? QStringLiteral("Yes") : QStringLiteral("No"));
}

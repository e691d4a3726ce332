#include "NyToastMessagingDefault.h"

#include "NyToastMessage.h"

#include <QDialog>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QPixmap>

NyToastMessagingDefault::NyToastMessagingDefault(QObject *parent)
    : NyToastMessagingInterface(parent)
{
}

NyToastMessagingDefault::~NyToastMessagingDefault() = default;

void NyToastMessagingDefault::sendToastMessage(const NyToastMessage &message)
{
    // Lives, hidden, until the process ends.
    auto *dialog = new QDialog(nullptr);
    auto *layout = new QGridLayout(dialog);
    auto *titleLabel = new QLabel(message.title(), dialog);
    auto *descriptionLabel = new QLabel(message.description(), dialog);
    auto *imageLabel = new QLabel(dialog);
    // An empty name would make Qt warn.
    const QString imagePath = message.image().absoluteFilePath();
    if (!imagePath.isEmpty())
        imageLabel->setPixmap(QPixmap::fromImage(QImage(imagePath)));
    layout->addWidget(titleLabel, 0, 1, 1, 2);
    layout->addWidget(descriptionLabel, 1, 1, 1, 2);
    layout->addWidget(imageLabel, 0, 0, 2, 1);
    dialog->exec();
}

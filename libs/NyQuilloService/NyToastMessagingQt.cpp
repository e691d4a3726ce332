#include "NyToastMessagingQt.h"

#include "NyToastMessage.h"
#include "NyToastMessageView.h"

#include <NyPixmapButton.h>

#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>

NyToastMessagingQt::NyToastMessagingQt(QObject *parent)
    : NyToastMessagingInterface(parent)
{
}

NyToastMessagingQt::~NyToastMessagingQt() = default;

void NyToastMessagingQt::sendToastMessage(const NyToastMessage &message)
{
    static const QString css = QStringLiteral(
        "QPushButton {background-color: #c30c15;border: 1px solid #c30c15;border-radius: 4px;color: #ffffff;font-weight: Bold;"
        "margin-left: 4px;margin-right: 2px;min-height: 30px;padding-left: 6px;padding-right: 6px;}");
    static const QString grayCss = QStringLiteral(
        "QPushButton {background-color: #ffffff;border-left: 1px solid #d8d8d8;border-top: 1px solid #dddddd;"
        "border-right: 1px solid #d8d8d8;border-bottom: 1px solid #b3b3b3;border-radius: 4px;color: #262626;padding-top: 4px;"
        "padding-left: 8px;padding-right: 8px;padding-bottom: 4px;icon-size: 24px;margin-left: 4px;margin-top: 6px;"
        "margin-right: 4px;margin-bottom: 6px;min-height: 24px;}");
    static const QString titleCss = QStringLiteral("QLabel {color: #262626;font-weight: Bold;}");
    static const QString descriptionCss = QStringLiteral("QLabel {color: #262626;}");

    m_id = message.id();

    auto *view = new NyToastMessageView;
    view->setWindowFlag(Qt::WindowStaysOnTopHint);
    auto *layout = new QGridLayout(view);

    auto *titleLabel = new QLabel(message.title(), view);
    titleLabel->setStyleSheet(titleCss);
    auto *closeButton = new NyPixmapButton(view, QStringLiteral("ico_button_close_bright"));
    auto *descriptionLabel = new QLabel(message.description(), view);
    descriptionLabel->setStyleSheet(descriptionCss);
    auto *imageLabel = new QLabel(view);
    auto *secondaryButton = new QPushButton(view);
    auto *mainButton = new QPushButton(view);

    // An empty name would make Qt warn.
    const QString imagePath = message.image().absoluteFilePath();
    const QImage image = imagePath.isEmpty() ? QImage() : QImage(imagePath);

    connect(mainButton, &QAbstractButton::clicked, this, &NyToastMessagingQt::onShowClicked);
    connect(mainButton, &QAbstractButton::clicked, view, &QObject::deleteLater);
    connect(secondaryButton, &QAbstractButton::clicked, view, &QObject::deleteLater);
    connect(closeButton, &QAbstractButton::clicked, view, &QObject::deleteLater);

    imageLabel->setPixmap(QPixmap::fromImage(image));

    layout->addWidget(closeButton, 0, 2, 1, 1, Qt::AlignRight);
    layout->addWidget(titleLabel, 0, 0, 1, 2);
    layout->addWidget(descriptionLabel, 1, 0, 1, 3);
    layout->addWidget(imageLabel, 2, 0, 1, 3, Qt::AlignCenter);
    layout->addWidget(mainButton, 3, 2, 1, 1, Qt::AlignRight);
    layout->addWidget(secondaryButton, 3, 1, 1, 1, Qt::AlignRight);
    layout->setColumnStretch(0, 7);

    if (message.showLaunchButtons()) {
        connect(secondaryButton, &QAbstractButton::clicked, this, &NyToastMessagingQt::onRescheduleClicked);
        mainButton->setText(tr("Jetzt anschauen"));
        secondaryButton->setText(tr("Später anschauen"));
        secondaryButton->setStyleSheet(grayCss);
        mainButton->setStyleSheet(css);
    } else {
        mainButton->hide();
        secondaryButton->setText(tr("Schließen"));
        secondaryButton->setStyleSheet(css);
    }

    view->show();
    view->raise();
    view->activateWindow();
}

void NyToastMessagingQt::onShowClicked()
{
    Q_EMIT showProjectRequested(m_id);
}

void NyToastMessagingQt::onRescheduleClicked()
{
    Q_EMIT rescheduleToastRequested(m_id);
}

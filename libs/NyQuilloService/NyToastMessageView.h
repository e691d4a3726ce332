#pragma once

#include "nyquilloservice_export.h"

#include <QPainterPath>
#include <QPoint>
#include <QWidget>

/**
 * A frameless window with round corners that fades in near the top right corner of the screen that holds the pointer.
 *
 * The left mouse button drags it. It does not close by itself.
 */
class NYQUILLOSERVICE_EXPORT NyToastMessageView : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyToastMessageView)

public:
    NyToastMessageView();
    ~NyToastMessageView() override;

    /** The outline that cuts the window: its whole area with round corners, in px. */
    QPainterPath roundedRect();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    /** Where the pointer took hold, from the top left corner of the frame. */
    QPoint m_dragPosition;
};

#pragma once

#include <NyPixmapButton.h>
#include <NyToastMessageView.h>

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

/** Looks into the toast windows on the screen, oldest first. */
namespace ToastWindow
{
inline QList<NyToastMessageView *> all()
{
    QList<NyToastMessageView *> views;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *view = qobject_cast<NyToastMessageView *>(widget))
            views.append(view);
    }
    return views;
}

/** The widget in a cell of the window's grid. */
template <class T>
T *at(const QWidget *view, int row, int column)
{
    auto *grid = qobject_cast<QGridLayout *>(view->layout());
    QLayoutItem *item = grid ? grid->itemAtPosition(row, column) : nullptr;
    return item ? qobject_cast<T *>(item->widget()) : nullptr;
}

inline QLabel *title(const QWidget *view)
{
    return at<QLabel>(view, 0, 0);
}
inline NyPixmapButton *closeButton(const QWidget *view)
{
    return at<NyPixmapButton>(view, 0, 2);
}
inline QLabel *description(const QWidget *view)
{
    return at<QLabel>(view, 1, 0);
}
inline QLabel *image(const QWidget *view)
{
    return at<QLabel>(view, 2, 0);
}
inline QPushButton *secondaryButton(const QWidget *view)
{
    return at<QPushButton>(view, 3, 1);
}
inline QPushButton *mainButton(const QWidget *view)
{
    return at<QPushButton>(view, 3, 2);
}
}

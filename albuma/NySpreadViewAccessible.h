#pragma once

#include <optional>

#include <QAccessibleWidget>
#include <QHash>

#include <NyBookPlace.h>

class NySpreadView;

/**
 * A spread as assistive technology sees it: its children are the photos, which can be selected, opened and asked for their menu.
 *
 * Owned by Qt's accessibility, as are the children. GUI thread.
 */
class NySpreadViewAccessible : public QAccessibleWidget
{
    Q_DISABLE_COPY_MOVE(NySpreadViewAccessible)
public:
    explicit NySpreadViewAccessible(NySpreadView *view);
    ~NySpreadViewAccessible() override;

    /** Lets Qt find this class for every NySpreadView. */
    static void install();
    /** Other photos are shown; those before are not there any more. */
    static void photosChanged(NySpreadView *view);
    static void selectionChanged(NySpreadView *view, std::optional<NyBookPlace> before);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

private:
    static NySpreadViewAccessible *of(NySpreadView *view);
    /** Null while the view is being destroyed. */
    NySpreadView *view() const;
    QAccessibleInterface *childOf(std::optional<NyBookPlace> place) const;

    mutable QHash<int, QAccessible::Id> m_children;
};

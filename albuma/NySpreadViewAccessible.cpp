#include "NySpreadViewAccessible.h"

#include <utility>

#include <QCoreApplication>
#include <QPointer>
#include <QWindow>

#include "NySpreadView.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

/** One photo of the shown spread, by its index among them. */
class PhotoAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
    Q_DECLARE_TR_FUNCTIONS(NySpreadViewAccessible)
public:
    PhotoAccessible(NySpreadView *view, int index)
        : m_object(view)
        , m_index(index)
        , m_place(view->places().value(index))
    {
    }

    int index() const { return m_index; }

    bool isValid() const override { return view() && view()->places().value(m_index, {NyBookPlace::Cover, -1}) == m_place; }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return view() ? view()->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(m_object); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Graphic; }
    void setText(QAccessible::Text, const QString &) override { }

    QString text(QAccessible::Text type) const override
    {
        return type == QAccessible::Name && view() ? view()->photoDescription(m_place) : QString();
    }

    QRect rect() const override
    {
        const NySpreadView *spread = view();
        if (!spread)
            return {};
        const QWidget *viewport = spread->viewport();
        const QRect whole = spread->photoRect(m_place).toAlignedRect();
        const QRect seen = whole & viewport->rect();
        const QRect shown = seen.isEmpty() ? whole : seen;
        return {viewport->mapToGlobal(shown.topLeft()), shown.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const NySpreadView *spread = view();
        state.selectable = true;
        state.focusable = true;
        state.selected = spread->selected() == m_place;
        state.focused = state.selected && spread->hasFocus();
        state.offscreen = !spread->photoRect(m_place).intersects(QRectF(spread->viewport()->rect()));
        state.invisible = !spread->isVisible();
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction(), OpenAction, showMenuAction(), setFocusAction()}; }

    QString localizedActionName(const QString &name) const override
    {
        if (name == pressAction())
            return tr("Auswählen");
        return name == OpenAction ? tr("Öffnen") : QAccessibleActionInterface::localizedActionName(name);
    }

    QString localizedActionDescription(const QString &name) const override
    {
        if (name == pressAction())
            return tr("Wählt das Foto aus");
        return name == OpenAction ? tr("Öffnet das Foto") : QAccessibleActionInterface::localizedActionDescription(name);
    }

    QStringList keyBindingsForAction(const QString &) const override { return {}; }

    void doAction(const QString &name) override
    {
        if (!isValid())
            return;
        // What follows may bring other photos, and with them the end of this object.
        NySpreadView *spread = view();
        const NyBookPlace place = m_place;
        if (name == showMenuAction()) {
            spread->requestContextMenu(place);
            return;
        }
        spread->setSelected(place);
        if (name == setFocusAction())
            spread->setFocus(Qt::ShortcutFocusReason);
        else if (name == OpenAction)
            Q_EMIT spread->photoActivated(place);
    }

private:
    static inline const QString OpenAction = u"Open"_s;

    /** Null also while the view is being destroyed. */
    NySpreadView *view() const { return qobject_cast<NySpreadView *>(m_object.data()); }

    QPointer<QObject> m_object;
    int m_index;
    NyBookPlace m_place;
};

QAccessibleInterface *create(const QString &, QObject *object)
{
    auto *view = qobject_cast<NySpreadView *>(object);
    return view ? new NySpreadViewAccessible(view) : nullptr;
}

void announce(QAccessibleInterface *interface, QAccessible::Event type)
{
    if (!interface)
        return;
    QAccessibleEvent event(interface, type);
    QAccessible::updateAccessibility(&event);
}

}

NySpreadViewAccessible::NySpreadViewAccessible(NySpreadView *view)
    : QAccessibleWidget(view, QAccessible::Canvas)
{
}

NySpreadViewAccessible::~NySpreadViewAccessible()
{
    for (const QAccessible::Id id : std::as_const(m_children))
        QAccessible::deleteAccessibleInterface(id);
}

void NySpreadViewAccessible::install()
{
    // Installing it again does no harm.
    QAccessible::installFactory(create);
}

NySpreadViewAccessible *NySpreadViewAccessible::of(NySpreadView *view)
{
    return dynamic_cast<NySpreadViewAccessible *>(QAccessible::queryAccessibleInterface(view));
}

NySpreadView *NySpreadViewAccessible::view() const
{
    return qobject_cast<NySpreadView *>(object());
}

void NySpreadViewAccessible::photosChanged(NySpreadView *view)
{
    NySpreadViewAccessible *spread = of(view);
    if (!spread)
        return;
    const QHash<int, QAccessible::Id> before = std::exchange(spread->m_children, {});
    for (const QAccessible::Id id : before) {
        announce(QAccessible::accessibleInterface(id), QAccessible::ObjectDestroyed);
        QAccessible::deleteAccessibleInterface(id);
    }
    // Whoever never asked for photos need not hear of new ones.
    const int count = before.isEmpty() ? 0 : spread->childCount();
    for (int i = 0; i < count; ++i)
        announce(spread->child(i), QAccessible::ObjectCreated);
}

void NySpreadViewAccessible::selectionChanged(NySpreadView *view, std::optional<NyBookPlace> before)
{
    NySpreadViewAccessible *spread = of(view);
    if (!spread)
        return;
    announce(spread->childOf(before), QAccessible::SelectionRemove);
    QAccessibleInterface *selected = spread->childOf(view->selected());
    announce(selected, QAccessible::SelectionAdd);
    if (view->hasFocus())
        announce(selected ? selected : spread, QAccessible::Focus);
}

int NySpreadViewAccessible::childCount() const
{
    return view() ? int(view()->places().size()) : 0;
}

QAccessibleInterface *NySpreadViewAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    if (const auto known = m_children.constFind(index); known != m_children.cend())
        return QAccessible::accessibleInterface(*known);
    auto *photo = new PhotoAccessible(view(), index);
    m_children.insert(index, QAccessible::registerAccessibleInterface(photo));
    return photo;
}

int NySpreadViewAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *photo = dynamic_cast<const PhotoAccessible *>(child);
    return photo && photo->parent() == this ? photo->index() : -1;
}

QAccessibleInterface *NySpreadViewAccessible::childOf(std::optional<NyBookPlace> place) const
{
    return place && view() ? child(int(view()->places().indexOf(*place))) : nullptr;
}

QAccessibleInterface *NySpreadViewAccessible::childAt(int x, int y) const
{
    if (!view())
        return nullptr;
    const QWidget *viewport = view()->viewport();
    const QPoint point = viewport->mapFromGlobal(QPoint(x, y));
    return viewport->rect().contains(point) ? childOf(view()->photoAt(point)) : nullptr;
}

QAccessibleInterface *NySpreadViewAccessible::focusChild() const
{
    return view() && view()->hasFocus() ? childOf(view()->selected()) : nullptr;
}

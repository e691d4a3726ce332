#include "NyStartScreenSettings.h"

#include <QStringList>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr bool OfThisProgram = true;
/** Stands in no file name. */
constexpr QChar Separator = u'/';

}

NyStartScreenSettings::NyStartScreenSettings(QObject *parent)
    : NySettings(parent)
    , m_geometry({}, {}, u"startScreenGeometry"_s, OfThisProgram)
    , m_order(0, 0, u"startScreenOrder"_s, OfThisProgram)
    , m_openedIds({}, {}, u"startScreenOpenedProposals"_s, OfThisProgram)
{
    load(m_geometry);
    load(m_order);
    load(m_openedIds);
}

NyStartScreenSettings::~NyStartScreenSettings() = default;

QByteArray NyStartScreenSettings::geometry() const
{
    return QByteArray::fromBase64(m_geometry.value().toLatin1());
}

void NyStartScreenSettings::setGeometry(const QByteArray &geometry)
{
    m_geometry.setValue(QString::fromLatin1(geometry.toBase64()));
    save(m_geometry);
}

NyProposalSorting::Order NyStartScreenSettings::order() const
{
    using Order = NyProposalSorting::Order;
    for (const Order order : {Order::OldestFirst, Order::ByTitle}) {
        if (m_order.value() == int(order))
            return order;
    }
    return Order::NewestFirst;
}

void NyStartScreenSettings::setOrder(NyProposalSorting::Order order)
{
    m_order.setValue(int(order));
    save(m_order);
}

QSet<QString> NyStartScreenSettings::openedIds() const
{
    const QStringList ids = m_openedIds.value().split(Separator, Qt::SkipEmptyParts);
    return {ids.cbegin(), ids.cend()};
}

void NyStartScreenSettings::addOpenedId(const QString &id)
{
    reloadOpenedIds();
    setOpenedIds(openedIds() << id);
}

void NyStartScreenSettings::keepOpenedIds(const QSet<QString> &existing)
{
    reloadOpenedIds();
    setOpenedIds(openedIds() & existing);
}

void NyStartScreenSettings::clearOpenedIds()
{
    setOpenedIds({});
}

void NyStartScreenSettings::reloadOpenedIds()
{
    load(m_openedIds);
}

void NyStartScreenSettings::setOpenedIds(const QSet<QString> &ids)
{
    QStringList sorted(ids.cbegin(), ids.cend());
    sorted.sort();
    const QString joined = sorted.join(Separator);
    if (joined == m_openedIds.value())
        return;
    m_openedIds.setValue(joined);
    save(m_openedIds);
}

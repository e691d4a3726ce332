#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <NyConfigItem.h>
#include <NySettings.h>

#include "NyProposalModel.h"

/**
 * What the start screen keeps from one run to the next. Each change is stored at once; where that fails, it holds for this run.
 * GUI thread.
 */
class NyStartScreenSettings : public NySettings
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyStartScreenSettings)
public:
    explicit NyStartScreenSettings(QObject *parent = nullptr);
    ~NyStartScreenSettings() override;

    /** As of QWidget::saveGeometry(); empty at first. */
    QByteArray geometry() const;
    void setGeometry(const QByteArray &geometry);
    NyProposalSorting::Order order() const;
    void setOrder(NyProposalSorting::Order order);

    /** The proposals that were opened since all were taken as read. */
    QSet<QString> openedIds() const;
    void addOpenedId(const QString &id);
    /** Forgets those of proposals that are gone, of what is stored now. */
    void keepOpenedIds(const QSet<QString> &existing);
    void clearOpenedIds();
    /** Reads anew what another window of the program, in a process of its own, may have stored. */
    void reloadOpenedIds();

private:
    void setOpenedIds(const QSet<QString> &ids);

    NyConfigItem<QString> m_geometry;
    NyConfigItem<int> m_order;
    NyConfigItem<QString> m_openedIds;
};

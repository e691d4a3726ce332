#pragma once

#include "NyActionFactoryCommon.h"

#include <NyLogger.h>
#include <NySingleton.h>

#include "nyguiwidgets_export.h"

#include <QAction>
#include <QObject>

/** Where menus get their actions. Main thread. */
class NYGUIWIDGETS_EXPORT NyActionRegistry : public QObject, public NySingleton<NyActionRegistry>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyActionRegistry)

public:
    NyActionRegistry();
    ~NyActionRegistry() override;

    /**
     * A new action that this registry does not keep. `member`, a slot or signal of `receiver`, is called when it is triggered. It
     * belongs to `parent`, or to the caller without one. Null for a kind of action that nobody makes.
     */
    template <class Receiver, class Member>
    QAction *unregisteredAction(NyActionType type, Receiver *receiver, Member member, QObject *parent)
    {
        auto *factory = dynamic_cast<NyActionFactoryCommon *>(NyActionFactory::factory(type));
        if (!factory)
            return nullptr;
        QAction *action = factory->createAndConfigureAction(type);
        if (!action)
            return nullptr;
        if (!action->isSeparator()) {
            connect(action, &QAction::triggered, receiver, member, Qt::UniqueConnection);
            NyLogger::instance().connectAction(action);
        }
        if (parent)
            action->setParent(parent);
        Q_EMIT unregisteredActionCreated(type, action);
        return action;
    }

Q_SIGNALS:
    void unregisteredActionCreated(NyActionType type, QAction *action);
};

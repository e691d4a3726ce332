#pragma once

#include "nyguiwidgets_export.h"

#include <memory>

#include <QAbstractNativeEventFilter>
#include <QObject>

/**
 * Tells when the desktop has a place for a tray icon. Main thread.
 *
 * Qt decides once in a process, at the first QSystemTrayIcon, whether icons go to a StatusNotifier host or to a tray of the X server. An
 * icon that is made before the desktop is ready would never reach a host that comes later (QTBUG-94871), so it must not be made before
 * one of the two is there.
 */
class NYGUIWIDGETS_EXPORT NyTrayWatcher : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyTrayWatcher)

public:
    /** Asks the bus, for 500 ms at most, and the X server. */
    explicit NyTrayWatcher(QObject *parent = nullptr);
    ~NyTrayWatcher() override;

    /** Whether an icon may be made. Also true where nothing can come that Qt would miss. Never turns false again. */
    bool isTrayThere() const { return m_isTrayThere; }

Q_SIGNALS:
    /** Once, when isTrayThere() turns true after the construction. */
    void trayAppeared();

private Q_SLOTS:
    void askHost();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void setTrayThere();
    static bool hasHost();

    class X11;
    std::unique_ptr<X11> m_x11;
    bool m_isTrayThere = false;
};

#pragma once

#include <memory>

#include <QObject>
#include <QStringList>

/**
 * The watcher of StatusNotifier items and, on demand, a host that would show them: the bus side of a desktop's tray.
 *
 * It answers on a thread and a bus connection of its own. All operations are thread-safe.
 */
class MockStatusNotifierHost : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MockStatusNotifierHost)

public:
    explicit MockStatusNotifierHost(QObject *parent = nullptr);
    ~MockStatusNotifierHost() override;

    /** Takes the watcher's name, without a host; false when there is no bus or the name is taken. */
    bool start();
    void stop();
    /** Tells everybody that there is a host from now on. */
    void registerHost();

    /** Bus names of the items that were registered. */
    QStringList items() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

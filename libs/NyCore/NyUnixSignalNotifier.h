#pragma once

#include "nycore_export.h"

#include <QObject>

#include <initializer_list>

class QSocketNotifier;

/**
 * Brings Unix signals into the event loop. One object a process, on the main thread.
 *
 * The handler only writes one byte to a socket; received() is emitted from the event loop. The signals' former handlers come
 * back with the destructor.
 */
class NYCORE_EXPORT NyUnixSignalNotifier : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyUnixSignalNotifier)

public:
    /** Catches `signalNumbers` (SIGTERM, …); where that fails, a warning names the signal and it keeps its effect. */
    explicit NyUnixSignalNotifier(std::initializer_list<int> signalNumbers, QObject *parent = nullptr);
    ~NyUnixSignalNotifier() override;

Q_SIGNALS:
    void received(int signalNumber);

private:
    void readSignals();

    QSocketNotifier *m_notifier = nullptr;
};

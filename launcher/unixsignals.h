// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;

namespace tessera {

/// Turns the first SIGTERM, SIGINT or SIGHUP into a Qt signal on the main thread. A second one ends the process at
/// once, for the case that the event loop no longer turns. One object at a time, main thread.
class UnixSignals : public QObject {
    Q_OBJECT
public:
    explicit UnixSignals(QObject* parent = nullptr);
    ~UnixSignals() override;

signals:
    void endWanted(int signalNumber);

private:
    void read();

    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tessera

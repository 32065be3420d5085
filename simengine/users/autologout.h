// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

namespace sim {

/// Watches the whole application for operation and calls `expired` once after each time without any. Belongs to the
/// application object and ends with it. Main thread.
class AutoLogout : public QObject {
    Q_OBJECT
public:
    AutoLogout(QObject* application, std::function<void()> expired);

    /// 0 or less switches it off.
    void setLimit(int seconds);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void check();

    std::function<void()> m_expired;
    QTimer m_timer;
    QElapsedTimer m_sinceOperation;
    int m_limitMs = 0;
};

} // namespace sim

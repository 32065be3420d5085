// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QFrame>
#include <QString>
#include <QTime>
#include <memory>

class Ui_LaserSplash;

/// Small window in the middle of the screen that tells, before the main window is there, what the start of the laser
/// waits for and since when. Main thread.
class LaserSplash : public QFrame {
    Q_OBJECT

public:
    explicit LaserSplash(QString const& title);
    ~LaserSplash() override;

    /// A wait begins now: what for, the input's number or -1, and its longest time. Shows the window.
    void ShowWait(QString const& what, int line, int longestMs);
    /// Brings the elapsed time up to date and draws it.
    void Refresh();

private:
    void ShowElapsed();
    void ToMiddle();

    std::unique_ptr<Ui_LaserSplash> ui;
    QElapsedTimer m_Elapsed;
    QTime m_Since;
    int m_LongestMs = 0;
};

namespace tessera {

/// "YLS laser Ready signal (input 22)", without the number when `line` is negative.
QString LaserWaitText(QString const& what, int line);
/// "Since 08:15:02, waited 3.2 s of at most 30.1 s"
QString LaserSinceText(QTime const& since, qint64 elapsedMs, int longestMs);

} // namespace tessera

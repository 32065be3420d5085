// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>

class Form_Marking;
class QPushButton;

namespace tessera {

/// Runs the active document some times as an operator does: opens the run dialog and presses its Start button once for
/// each pass. Main thread.
class MarkJob : public QObject {
    Q_OBJECT
public:
    explicit MarkJob(int passes, QObject* parent = nullptr);

    /// Starts the first pass. ended() follows in every case, never from within this call.
    void start();
    int passesDone() const { return m_done; }
    int passesWanted() const { return m_wanted; }
    /// ms since the pass under way began.
    qint64 passTime() const { return m_passTime.isValid() ? m_passTime.elapsed() : 0; }

signals:
    void passEnded(int number, qint64 milliseconds);
    /// All passes ended well when `error` is empty.
    void ended(QString error);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString openDialog();
    void beginPass();
    QString pressStart();
    void finishPass();
    void finish(QString const& error);

    int m_wanted;
    int m_done = 0;
    bool m_passCounted = false;
    QPointer<Form_Marking> m_dialog;
    QPointer<QPushButton> m_startButton;
    QPointer<QPushButton> m_cancelButton;
    QElapsedTimer m_passTime;
};

} // namespace tessera

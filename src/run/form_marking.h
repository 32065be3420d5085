// SPDX-License-Identifier: MIT
#pragma once

#include "engine/manualresetevent.h"
#include "engine/marktypes.h"
#include "engine/vzdialog.h"
#include "run/markingthread.h"
#include "run/runcounter.h"
#include "run/stopwatcher.h"

#include <QDateTime>
#include <QFuture>
#include <QTimer>
#include <QVector>
#include <atomic>
#include <memory>

class Ui_FormMarking;

/// Run dialog of the active document: starts, pauses and stops its worker and shows counter, time and state.
/// Main thread, except StopMark and IsShown, IsRedView and IsMarkSelect, which any thread may call.
class Form_Marking : public VZDialog {
    Q_OBJECT
public:
    ~Form_Marking() override;

    /// Creates the one dialog, hidden; nothing when it exists.
    static void InitWindow(QWidget* parent);
    /// Creates it when needed and shows it.
    static void ShowWindow(QWidget* parent);
    /// Null before InitWindow and after the main window is gone.
    static Form_Marking* Instance() { return m_pFormMarking; }

    /// Run input: starts or resumes normal marking unless an alarm is active.
    void StartMark(bool redLoopTrigger);
    /// Red-light preview; returns when it has ended, in a loop after a stop.
    void StartMarkPreview();
    /// Preview with given options, without waiting. `delay` in ms.
    void StartMarkPreview(bool select, bool loop, int delay, MarkType type);
    void StopMark();
    void PauseMark();
    void ReStartMark();
    /// The red-light or border preview is chosen.
    bool IsRedView() const { return m_bRedView; }
    /// Only selected objects are to be marked.
    bool IsMarkSelect() const { return m_bSelect; }
    /// A looping red-light preview runs.
    bool IsRedLoopRun() const;
    /// `kind` 0 normal, 1 red light, other border.
    void SetRunSelection(int kind, bool loop);
    void SetEnableTriggerWhenRedLoop(bool on);
    /// The running preview takes over changed data. Document views call it by name.
    Q_INVOKABLE void UpdateRedViewData();
    /// Shows or hides the axis buttons by the debug setting and fixes the size for it.
    void ChangeFormSize();
    /// Every text in the operator's language.
    void SetUIText();

    /// Ends a run and returns when the worker has left it.
    void StopAndWait();
    /// The worker has a run.
    bool IsRunning() const { return m_Thread.IsActive(); }
    /// As long as the end of a run has not been taken in here, too. Main thread.
    bool IsRunOn() const { return IsRunning() || !m_bCanExit; }
    /// The last pass had something to mark and was not stopped by an order to this dialog. Any thread.
    bool LastPassMarked() const { return m_Thread.LastPassMarked(); }
    /// A pass works with this document.
    bool IsMarking(QRulerView const* view) const { return m_Thread.IsMarking(view); }
    /// How far a stop has come that was commanded here.
    tessera::StopState GetStopState() const { return m_StopWatcher.State(); }
    /// Visibility that other threads may ask for.
    bool IsShown() const { return m_bShown; }
    void setVisible(bool visible) override;

public slots:
    void reject() override;

signals:
    void UpdateTimer();
    void SendRunData();
    void StopStateChanged(tessera::StopState state);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void on_pushButtonStart_clicked();
    void on_pushButtonStop_clicked();
    void on_pushButtonCancel_clicked();
    void on_pushButtonStopAxis_clicked();
    void OnMarkStart();
    void OnReMarkStart();
    void OnMarkPause();
    void OnMarkFinish(bool ok, QDateTime time);
    void OnMarkFinishUI();
    void OnMarkRunSpecial();
    void OnStopStateChanged(tessera::StopState state);
    void OnUpPressed();
    void OnUpReleased();
    void OnDownPressed();
    void OnDownReleased();

private:
    explicit Form_Marking(QWidget* parent);
    void Connect();
    void SelectKind(int kind);
    void FollowOptions();
    MarkType SelectedType() const;
    void SetMarkingUI();
    void SetIdleUI();
    void EnableOptions(bool enable);
    void ShowStatus(char const* color, char const* key);
    void ShowStopState();
    void ShowCounter();
    void StoreCounter(int value);
    void AddRunTime(QDateTime const& until);
    void AxisButtonPressed(bool up);
    void AxisButtonReleased();
    /// Display timer; hides QWidget::update, which nobody needs of this dialog.
    void update();
    friend void UpdateTime(QWidget* dialog);

    static Form_Marking* m_pFormMarking;

    std::unique_ptr<Ui_FormMarking> ui;
    bool m_bCanExit = true;
    ManualResetEvent m_StartEvent{false};
    ManualResetEvent m_PauseEvent{false};
    ManualResetEvent m_StopEvent{false};
    MarkingThread m_Thread;
    tessera::StopWatcher m_StopWatcher{[this] { return m_Thread.IsGoingOn(); },
                                       [this] { return m_bCanExit && !m_Thread.IsActive(); }};
    tessera::RunCounter m_nMarkCnt;
    qint64 m_nRunTime = 0; ///< ms
    QDateTime m_LastTime;  ///< invalid while paused
    QTimer m_Timer{this};
    QVector<QFuture<void>> m_AxisSteps; ///< single steps under way
    bool m_bCounterFailed = false;
    std::atomic<bool> m_bShown{false};
    std::atomic<bool> m_bRedView{false};
    std::atomic<bool> m_bSelect{false};
};

/// For the debugger: what the display timer does, once, with the number of such calls so far in the debug window.
/// Nothing for another widget or null. Main thread.
void UpdateTime(QWidget* dialog);

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/vzdialog.h"
#include "multidoc/multimarkthread.h"
#include "multidoc/projectrows.h"
#include "multidoc/trigerdoc.h"
#include "multidoc/triggerrule.h"

#include <QDateTime>
#include <QTimer>
#include <QVector>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

class QListWidgetItem;
class Ui_MultiDocMark;

/// Window of the multi-document project and of its run: each document of the list is marked when the inputs take its
/// pattern. Main thread, except StopMark, IsShown and GetMarkStatus, which any thread may call.
class MultiDocMark : public VZDialog, private tessera::TriggerPort {
    Q_OBJECT
public:
    ~MultiDocMark() override;

    /// Creates the one window, hidden, with the last project; nothing when it exists.
    static void InitWindow(QWidget* parent);
    /// Null before InitWindow and after the main window is gone. Any thread.
    static MultiDocMark* Instance() { return m_pMulDocMarking; }

    // Project
    /// Replaces the entries by those of a project file; none when it cannot be read. The current name stays.
    void OpenDoc(QString const& path);
    /// Writes the entries as the project of this name; the current name stays. What an older, longer file holds behind
    /// the new text stays there. A failure is told to the operator.
    void SaveDoc(QString const& name);
    /// Opens the last project, if it is there.
    void ReadRecent();
    /// Makes this the current project and the last one.
    void SetCurMultiMarkFile(QString const& name);
    void AddDoc(TrigerDoc& doc);
    /// Takes the entry out of the list; whoever holds it may use it until the window goes.
    void RemoveDoc(int index);
    void ClearDocs();
    /// Swaps two entries and makes the moved one current. Nothing with a place outside the list.
    void ChangeIndex(int from, int to);
    /// A project is open, with or without entries.
    bool HasFile() const { return !m_CurFile.isEmpty(); }
    void UpDateWindowText();
    void SetUIEnable();
    /// Every text in the operator's language.
    void SetUIText();

    // Run
    /// Takes an input word while this is the marking window; it may hold the main thread for 10 ms.
    void InputChange(unsigned int input);
    /// Opens all documents of the list and begins to wait for inputs.
    void StartMark();
    /// Ends the document that is marked and drops those that wait; the run stays on.
    void StopMark();
    MultiMarkStatus GetMarkStatus() const;
    /// A run is on, whether or not a document is being marked. Any thread.
    bool IsRunOn() const { return m_Thread.GetRunning(); }
    /// A document is being marked or waits for it. Any thread.
    bool HasWork() const { return m_Thread.HasWork(); }
    /// The view is about to be deleted; returns when the run does not use it any more.
    void ForgetView(QRulerView const* view) { m_Thread.ForgetView(view); }
    /// Visibility that other threads may ask for.
    bool IsShown() const { return m_bShown; }
    void setVisible(bool visible) override;

public slots:
    void reject() override;

signals:
    /// A document was marked, or a run has begun. For listeners outside the program.
    void SendRunData();
    void InputChangeSignal(unsigned int input);

protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void OnNew();
    void OnOpen();
    void OnSave();
    void OnSaveAs();
    void OnMangerFile();
    void on_pushButtonAdd_clicked();
    void on_pushButtonDel_clicked();
    void on_pushButtonEdit_clicked();
    void on_pushButtonMoveUp_clicked();
    void on_pushButtonMoveDown_clicked();
    void on_listWidget_itemDoubleClicked(QListWidgetItem* item);

    void on_pushButtonRun_clicked();
    void on_pushButtonStop_clicked();
    void on_pushButtonStopMark_clicked();
    void on_pushButtonTriger0_clicked();
    void on_pushButtonTriger1_clicked();
    void on_pushButton_3_clicked();
    void OnMarkstatusChange(int status, QString const& file);
    void OnTest(int value);
    void OnInputChange(unsigned int input);

private:
    explicit MultiDocMark(QWidget* parent);
    void Connect();

    // Project
    bool CanSave() const;
    void AskForSave();
    void StoreAs(QString const& name);
    void Append(TrigerDoc const& doc);
    /// Patterns and warning after a change of the entries.
    void ShowEntries();
    void ShowRuns(TrigerDoc const* doc);
    void ShowClashes();

    // Run
    bool isSafe() override;
    unsigned int settledInput() override;
    bool isIdle() override;
    bool isOpen(QString const& name) override;
    void queueDocument(TrigerDoc const& doc) override;
    void note(QString const& text) override;
    void SetUI(bool running);
    void SetMarkStatus(MultiMarkStatus status);
    void ShowStatusColor(Qt::GlobalColor color);
    void ShowStatusText();
    void ShowRunCount();
    void BeginDocument(QString const& file);
    /// Display timer; hides QWidget::update, which nobody needs of this dialog.
    void update();

    static std::atomic<MultiDocMark*> m_pMulDocMarking;

    std::unique_ptr<Ui_MultiDocMark> ui;
    QString m_CurFile;
    QVector<TrigerDoc*> m_Docs;                        ///< in the order of the list
    std::vector<std::unique_ptr<TrigerDoc>> m_Owned;   ///< those of m_Docs
    std::vector<std::unique_ptr<TrigerDoc>> m_Removed; ///< that somebody may still hold
    tessera::ProjectHeader* m_pHeader;
    tessera::RunRecords m_Runs;
    tessera::TriggerRule m_Rule;
    MultiMarkThread m_Thread{this};
    int m_nDelay = 50; ///< s
    QTimer m_Timer{this};
    QDateTime m_StartTime;
    qint64 m_nElapsed = 0; ///< ms
    int m_nTimerId = -1;
    int m_nDots = 0;
    mutable std::mutex m_StatusLock;
    MultiMarkStatus m_Status = MultiMarkIdle;
    int m_nRunCount = 0;
    std::atomic<bool> m_bShown{false};
};

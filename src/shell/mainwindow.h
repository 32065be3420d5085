// SPDX-License-Identifier: MIT
#pragma once

#include "engine/iautologinoutmsg.h"
#include "engine/marktypes.h"
#include "engine/showdebugino.h"
#include "shell/alarmmask.h"
#include "shell/inputedges.h"
#include "shell/keyeventhandlethread.h"

#include <QFile>
#include <QMainWindow>
#include <QMap>
#include <QPixmap>
#include <QPointF>
#include <QPointer>
#include <QTextStream>
#include <QTimer>
#include <QVector>
#include <atomic>
#include <memory>
#include <mutex>

class AlarmCtrl;
class AlarmHistoryDialog;
class FileListView;
class FormTeaching;
class LeftPanel;
class MarkLayerParamForm;
class MarkToolProperty;
class QLabel;
class QResizeEvent;
class QRulerView;
class RedLoopPreview;
class RightPanel;
class StatuseView;
class Ui_MainWindow;
class UpdateInputThread;

namespace tessera {
class AlarmRecorder;
class DelayedStop;
enum class StopState;
struct SafetyStep;
} // namespace tessera

/// The one main window, where the subsystems meet: cards, open documents, alarms, state of the run dialogs. The program
/// calls InitMainWnd, shows Instance(), calls StartUp, and at its end ClearMainWnd. Main thread, except where a
/// function says otherwise.
class MainWindow : public QMainWindow, public ShowDebugIno, public IAutoLoginOutMsg {
    Q_OBJECT
public:
    /// Builds everything in a fixed order and leaves the window hidden; blocks while axes are homed.
    static void InitMainWnd();
    /// Closes cards and threads in a fixed order and deletes the window; works without a window too.
    static void ClearMainWnd();
    /// Null before InitMainWnd and after ClearMainWnd. Any thread.
    static MainWindow* Instance() { return m_pInstance; }
    /// Mirror-point callback of the views: emits SetCurMirrorPos.
    static void GetCurMirrorPt(QPointF point);

    ~MainWindow() override;

    /// Opens the run dialog that is set for the program start. Called by the program once the window is up.
    void StartUp();

    // Documents
    /// The active view or null, with GetCurMirrorPt made its mirror-point callback. Any thread.
    QRulerView* GetCurDoc();
    /// The active view or null. Any thread.
    QRulerView* GetActiveView() const { return m_pCurDoc; }
    QVector<QRulerView*> GetDocs() const { return m_Docs; }
    /// The view with this file name, null when there is none.
    QRulerView* GetDoc(QString const& path) const;
    /// Activates a tab; false for a negative index or one above the number of open files.
    bool SetCurDoc(int index);
    /// Activates the view of this path; false when the path is not open.
    bool SetCurDoc(QString const& path);
    /// Activates the document when it is open, otherwise reads it. An unreadable file changes nothing.
    void OpenFile(QString const& path);
    /// Makes an empty document under this name, stores it and makes it the active one. False when it could not be
    /// stored; it is open nevertheless.
    bool NewFile(QString const& name);
    void CloseFile(QString const& path);
    void CloseAllFile();
    bool IsFileOpened(QString const& path) const;
    /// Reads the set of open documents anew after files were imported.
    void ResetFiles();
    /// Takes over a document pushed by a controlling station. `first` is the file that holds it, `second` the name
    /// under which it is opened and stored here. False when the file cannot be read; nothing is opened then.
    bool SyncFileData(QString const& first, QString const& second);
    bool IsShowDoc();
    void SetShowDoc(bool show);
    void LayerIndexChanged(int layer);

    // Run
    /// Locks the editing part of the window while a job runs.
    void SetMarkStatus(bool run);
    /// A red-light or border preview runs. Any thread.
    bool IsRedView() const { return m_bRedView; }
    void SetRedVie(bool on) { m_bRedView = on; }
    /// 0 no run dialog is visible, 1 the single-document one, 2 the multi-document one. Any thread.
    int MarkWindowIsVisible();
    /// A run or preview of the run dialog, shown or not, or of a remote order goes on. Any thread.
    bool IsJobUnderWay() const;
    /// A run of the run dialog or of a project is on, for which the window is locked.
    bool IsLocalRunOn() const;
    /// A host's or station's run is on.
    bool IsRemoteRunOn() const;
    void ShowNormalMarkWindow();
    void ShowMultDocMarkWindow();
    /// Asks for the visible run dialog to be centred. Any thread.
    void MoveMarkWindowToCenter(bool force);
    /// Centres the visible run dialog when it is not inside the main window, or always with `force`.
    void MoveMarkWindow2Center(bool force);
    void UpdateMarkBTTime();
    /// Queues a direction key for the view while a preview runs; repeats are dropped while one waits. Document views
    /// call it by name.
    Q_INVOKABLE void HandDirEventOnRedView(QKeyEvent* event);
    /// Hands pending direction keys to the active view. Key thread.
    void PassDirKeys();

    /// The teaching window has been closed: back to selecting.
    void onTeachingRecover();

    // Supervision
    /// True when no listed alarm is active; otherwise the alarms are shown in the status list. Any thread.
    bool CheckAlarmStatus();
    QVector<QString> GetAlarmInfos();
    bool IsSafeAlarm(unsigned int bits) const { return m_Alarms.IsSet(bits); }
    void SetSafeAlarm(bool on, unsigned int bits) { m_Alarms.Set(on, bits); }
    unsigned int GetSafeAlarm() const { return m_Alarms.Mask(); }
    void IOStartRun();
    void IOStartPreview();
    void IOPauseRun();
    /// Any thread.
    void IOStopRun();
    /// Edge of a named input function in this sample. Ask once a poll at most: each answer moves the state.
    tessera::InputEdge IsAccess(QString const& name, unsigned int input);
    /// Beat of the input poll: emits TimerUpDate, unless the last one has not been handled yet. Any thread.
    void timerUpDate();

    // Appearance
    /// Chooses whether this station is a remote console without a card.
    void SwitchSysMode(bool remote);
    /// Switches between the editor and a custom window; only with a custom window for the whole screen.
    void SetUIMode(bool full);
    void SetUIText();
    void onCodeToolVisible();
    void onFlyMarkSetteingVisible();
    void onSplitLaserSetVisible();
    void onCcdToolVisible();
    void UpdateIOSetting();
    /// Puts the pages of the right panel in, each may be null: object properties at the top, then the motion page when
    /// there is a motion card, the layer parameters last. They belong to the panel from then on; those before go.
    void SetRightPages(QWidget* toolProperty, QWidget* motion, QWidget* layerForm);
    /// Writes one line to the debug file. Any thread.
    void SaveDebugText(QString const& text);

    void ClearTextSub() override;
    /// Any thread; from another than the main thread the list is changed later.
    void ShowTextsSub(QString text, DebugInfoType type) override;
    void SetTextsSub(QVector<QString> texts, QVector<DebugInfoType> types) override;
    void AutoLoginOut() override;

signals:
    void UserChanged();
    void updateMatrBTTime();
    void ResetAlarmStatus();
    void TimerUpDate();
    void SetSystemUI();
    void MoveMarkWnd2Center(bool force);
    void SetCurMirrorPos(QPointF point);
    void LaserAlarm(bool alarmed, QString text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    QMenu* createPopupMenu() override;

private slots:
    void countTime();
    void onMoveMarkWnd2Center(bool force);
    void OnUserChanged();
    void OnTimerUpDate();
    void OnResetAlarmStatus();
    void onSetSystemUI();
    void ShowBufferRunTime();
    void ChangeUIMode();

    void onOpenFile();
    void SaveAs();
    void onSaveFile();
    void onSaveAllFile();
    void OnChangeFileIndex(int from, int to);
    void onSubWndClosed(QString path);
    void enableRedoUndo(bool redo, bool undo);
    void SelectObjChange(double x, double y, double width, double height, double angle, int count, int workType);
    void onMouseMoveEvent(QPointF mm, QPoint pixel);
    void OnChangeOperatorOnView();

    void onTeaching(bool on);
    void onUndo();
    void onRedo();
    void onSort();
    void onAlign();
    void OnCombine();
    void OnUnCombine();
    void OnCombineLine();
    void OnUnCpmbineLine();
    void on_actionAddRect_triggered(bool on);
    void on_actionAddCircle_triggered(bool on);
    void on_actionAddText_triggered(bool on);
    void on_actionTeachCircle_triggered(bool on);
    void on_actionTeachArc_triggered(bool on);
    void on_actionscaleRegion_triggered(bool on);
    void on_actionRedLoopPreview_triggered();
    void on_actionImportCAD_triggered();
    void on_actionscaleSelect_triggered();
    void on_actionscaleReset_triggered();
    void on_actionzoomIn_triggered();
    void on_actionzoomOut_triggered();
    void on_actionarrayObj_triggered();
    void on_actionalienation_triggered();
    void on_actionmirrorTB_triggered();
    void on_actionmirrorLR_triggered();
    void on_actionsameWidth_triggered();
    void on_actionsameHeight_triggered();
    void on_actionsameSize_triggered();

    void on_actionNew_triggered();
    void on_actionOpen_triggered();
    void on_actionSave_triggered();
    void on_actionSaveAs_triggered();
    void on_actionMark_triggered();
    void on_actionMultiDocMark_triggered();
    void on_actionChangeDebug_triggered();
    void on_actionShowDoc_triggered(bool on);
    void on_actionShowDebugInfo_triggered();
    void on_actionImportTTFFont_triggered();
    void on_actionSetLan_triggered();
    void on_actionCCD_triggered();
    void on_actionIOSet_triggered();
    void on_actionResetVZCard_triggered();
    void on_actionReboot_triggered();
    void on_actionShutdown_triggered();
    void on_actionOpenTerminal_triggered();
    void on_action_ResolutionSet_triggered();
    void on_actionSetBackImage_triggered();
    void on_actionFileManager_triggered();
    void on_actionChangeUser_triggered();
    void on_actionChangePassWord_triggered();
    void on_actionNewUser_triggered();
    void on_actionViewPermission_triggered();

private:
    MainWindow();

    // Handlers whose names look like generated connections and are not
    void on_LaserAlarm(bool alarmed, QString text);
    void on_EnableMarkAction(bool enable);
    void on_laserAlarm_clicked();
    void ShowAlarmHistory();
    void OnStopStateChanged(tessera::StopState state);
    void on_ActivDocChanged(int index);
    void on_CloseFile(int index, bool save);
    void on_actDoc_New_triggered();
    void on_rightWigetSizeChange(QResizeEvent* event);
    void on_actSelect_triggered();
    void on_actAddMarkPoint_triiger(bool on);
    void on_actAddLine_triiger(bool on);
    void on_actAddMarkTools_triggered(bool on);

    // Steps of the constructor, in their order
    void ReadVersion();
    void OpenDebugFile();
    static void DressApplication();
    void BuildPanels();
    void BuildLabels();
    void BuildStopLabel();
    void BuildAlarmCtrls();
    void FillStatusBar();
    void ShowVersions();
    void PrepareTools();
    void InitMarkCard();
    void ShowCardState();
    void ShowCardVersion();
    void ConnectOwnSignals();
    void ApplyIOState();
    void StartCommandServer();
    void ConnectRemoteOrders();
    void ShowUserMenu();
    void HomeAxes();
    void ShowOptionalItems();

    void ToggleCardStatus();

    // The input poll, on the main thread
    void CheckInput(unsigned int input);
    void CheckLaserAlarm();
    void CheckSafe(unsigned int input);
    void TakeSafetyStep(tessera::SafetyStep const& step);
    void CheckRunStop(unsigned int input);
    void CheckMultiDoc(unsigned int input);
    void CheckAutoManual(unsigned int input);
    void CheckFilberLaserAlarm();
    void RecordAlarms();

    void InitMainWindow();
    void SetIcons();
    void initSlotSingle();
    void initMarkTool();
    void SetPluginTexts();
    void InitCustomWindow();
    void LoadCustomWindow();
    void CloseThread();
    void PlaceLabels(QWidget const* bar, int fromRight);
    QWidget* MarkWindow(int kind) const;
    int VisibleMarkWindow() const;
    void SetReadyOut(int value);
    void UserChange();

    // Documents
    void ReadRecentFile();
    void ResetRecentFile();
    void AppendOpendFile(QString const& path);
    /// Makes the view of this path the active one, when there is one.
    void Activate(QString const& path);
    void AddObjList(QRulerView* view);
    void ShowNewView(QRulerView* view);
    void DeleteView(QRulerView* view);
    void SetUIChangeDoc(QRulerView* view);
    void ConnectView(QRulerView* view, bool on);
    void EnableForDocument(QRulerView* view);
    void EnableForSelection(QRulerView* view);
    void DisableDocumentActions();
    void SetSelectObjCnt(int count);
    void EnableRightPages(bool toolProperty, bool layerForm);
    void BuildRightPages();
    /// The pages of these kinds, null while the right panel holds others.
    MarkToolProperty* ToolProperty() const;
    MarkLayerParamForm* LayerForm() const;
    void ResetLayerData();
    void ShowObjList(QRulerView* view, bool show);

    // Tools
    void UnSelectAllTooll();
    void SelectTool(QAction* action, OperatorOnView op, bool on);
    void BackToSelect();
    void NewTeachingWindow();
    void NeedTeachingWindow();
    bool IsTeachingOpen() const;

    static std::atomic<MainWindow*> m_pInstance;
    static int m_FirstLoad;

    tessera::AlarmMask m_Alarms;
    std::unique_ptr<tessera::AlarmRecorder> m_pAlarmRecorder;
    QPointer<AlarmHistoryDialog> m_pAlarmHistory;
    bool m_bLaserAlarm = false; ///< as the fault lines told in the last poll
    QString m_LaserAlarmText;
    tessera::InputEdges m_Edges;
    std::shared_ptr<tessera::DelayedStop> m_pDelayedStop;
    QPointer<QWidget> m_pCustomWindow;
    QPointer<FormTeaching> m_pTeaching;  ///< of the last start; null before the first
    QPointer<RedLoopPreview> m_pRedLoop; ///< of the last use; null before the first
    int m_nTimerId = -1;
    QFile m_DebugFile;
    std::unique_ptr<QTextStream> m_pDebugStream;
    std::mutex m_DebugLock;
    QString m_Version;
    std::unique_ptr<UpdateInputThread> m_pInputThread;
    std::atomic<bool> m_bPollWaits{false}; ///< a beat has been given that no poll has followed yet
    std::atomic<bool> m_bRedView{false};
    bool m_bFullUI = false;
    bool m_bSaveRecent = true;
    std::mutex m_MarkWndLock;
    QLabel* m_pCardStateLabel = nullptr;
    RightPanel* m_pRightPanel = nullptr;
    LeftPanel* m_pLeftPanel = nullptr;
    FileListView* m_pFileList = nullptr;
    StatuseView* m_pStatusView = nullptr;
    QPointer<QWidget> m_pToolProperty;
    QPointer<QWidget> m_pMotion;
    QPointer<QWidget> m_pLayerForm;
    QLabel* m_pSpareLabel = nullptr;
    QLabel* m_pCardStatusLabel = nullptr;
    QLabel* m_pStopLabel = nullptr; ///< shown while a stop is not confirmed
    QLabel* m_pSoftVersionLabel = nullptr;
    QLabel* m_pCardVersionLabel = nullptr;
    QLabel* m_pTimeLabel = nullptr;
    QLabel* m_pSelectCntLabel = nullptr;
    QLabel* m_pMousePosLabel = nullptr;
    QLabel* m_pBufferTimeLabel = nullptr;
    QLabel* m_pGreenLabel = nullptr;
    QLabel* m_pYellowLabel = nullptr;
    QLabel* m_pRedLabel = nullptr;
    QPixmap m_RedPixmap;
    QPixmap m_GreenPixmap;
    QPixmap m_YellowPixmap;
    AlarmCtrl* m_pLaserAlarm = nullptr;
    AlarmCtrl* m_pSafeAlarm = nullptr;
    std::atomic<QRulerView*> m_pCurDoc{nullptr};
    /// Held while the key thread uses the active view, and to let go of a view that is to be deleted.
    std::mutex m_DocUseLock;
    QVector<QRulerView*> m_Docs;
    std::unique_ptr<Ui_MainWindow> ui;
    QVector<QAction*> m_ToolActions;
    QVector<class MarkToolBaseInfo*> m_ToolInfos;
    QVector<class IMarkToolModule*> m_ToolModules;
    QVector<QString> m_OpenFiles;
    QTimer m_SecondTimer;
    bool m_bFilberAlarm = false; ///< the fibre laser's alarm was raised in this run of the program
    bool m_bShowDoc = false;
    KeyEventHandleThread m_KeyThread{this};
};

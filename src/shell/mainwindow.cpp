// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/boxspliceparam.h"
#include "engine/ccdserver.h"
#include "engine/ccsserver.h"
#include "engine/externmodules.h"
#include "engine/layerdata.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/movecardmanager.h"
#include "engine/qrulerview.h"
#include "engine/rundatagather.h"
#include "engine/showdebuginfo.h"
#include "engine/systemparam.h"
#include "laser/runlaserstart.h"
#include "multidoc/multidocmark.h"
#include "remote/externalresponse.h"
#include "remote/hostresponsetcp.h"
#include "run/delayedstop.h"
#include "run/form_marking.h"
#include "shell/alarmhistorydialog.h"
#include "shell/alarmrecorder.h"
#include "shell/updateinputthread.h"
#include "shell/windowgeometry.h"
#include "support/approot.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QGuiApplication>
#include <QScreen>

namespace {

constexpr int kSecondMs = 1000;
/// The disk has enough to do while the program comes up.
constexpr int kHistoryBeginMs = 3000;
/// Work mode in which a controlling station commands this one.
constexpr int kWorkModeRemote = 3;

bool commandServerWanted() {
    SystemParam const* system = SystemParam::Instance();
    return !system->GetSysMode() && system->GetWorkMode() == kWorkModeRemote;
}

} // namespace

std::atomic<MainWindow*> MainWindow::m_pInstance{nullptr};
int MainWindow::m_FirstLoad = 0;

void MainWindow::InitMainWnd() {
    LayerData::InitLayerData();
    auto* window = new MainWindow;
    m_pInstance = window;
    CCDServer::InitCCDServer();
    HostResponseTcp::InitHostResponseTcp();
    // nothing of it is on the screen yet: setWindowFlags() would style every widget anew
    window->overrideWindowFlags(window->windowFlags() & ~(Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    Form_Marking::InitWindow(window);
    MultiDocMark::InitWindow(window);
    window->InitMainWindow();
    ShowDebugInfo::Instance();
    ShowDebugIno::SetInstance(window);
    IAutoLoginOutMsg::SetInstance(window);
    window->setContextMenuPolicy(Qt::NoContextMenu);
    BoxSpliceParam::Read();
    RunDataGather::Instance()->SetOpenTimeStamp(QDateTime::currentDateTime());
}

/// The card is closed before the threads are told to end: the input poll asks whether it is open first. The laser's
/// lines are therefore driven only by a card that still reports open after that; plants rely on the order.
void MainWindow::ClearMainWnd() {
    if (commandServerWanted())
        CloseServer();
    HostResponseTcp::EndHostResponseTcp();
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        card->CloseCard();
    RunLaserStart::Instance()->RunLaser_End();
    MoveCardManager::Instance()->CloseMoveCard();
    if (MainWindow* window = m_pInstance) {
        window->CloseThread();
        for (int i = window->m_Docs.size() - 1; i >= 0; --i)
            window->m_Docs.at(i)->m_bExitClear = false;
        delete window;
        m_pInstance = nullptr;
    }
    FreeExternModules();
}

MainWindow::MainWindow()
    : m_pAlarmRecorder(std::make_unique<tessera::AlarmRecorder>(tessera::AlarmRecorder::File()))
    , m_pDelayedStop(std::make_shared<tessera::DelayedStop>([this] { IOStopRun(); })) {
    DressApplication();
    ui = std::make_unique<Ui_MainWindow>();
    ui->setupUi(this);
    ReadVersion();
    OpenDebugFile();
    setWindowTitle(QStringLiteral("VZ Tessera"));
    BuildPanels();
    BuildLabels();
    BuildStopLabel();
    BuildAlarmCtrls();
    FillStatusBar();
    m_Alarms.LoadTexts();
    ShowVersions();
    PrepareTools();
    InitMarkCard();
    ShowCardVersion();
    BuildRightPages();
    ConnectOwnSignals();
    ApplyIOState();
    StartCommandServer();
    ConnectRemoteOrders();
    ShowUserMenu();
    RunLaserStart::Instance()->RunLaser_Start();
    HomeAxes();
    ShowOptionalItems();
}

/// The custom window goes while all that it may ask for is there. What the threads use goes in the reverse order of
/// use: first the threads, then the remote orders and the run dialogs with their workers, then the views that they
/// marked.
MainWindow::~MainWindow() {
    ShowDebugIno::SetInstance(nullptr);
    IAutoLoginOutMsg::SetInstance(nullptr);
    delete m_pCustomWindow.data();
    delete m_pAlarmHistory.data();
    m_SecondTimer.stop();
    m_pInputThread.reset();
    tessera::DelayedStop::SetCurrent(nullptr);
    m_pDelayedStop->End();
    m_KeyThread.Finish();
    ExternalResponse::Instance()->CloseOrders();
    delete Form_Marking::Instance();
    delete MultiDocMark::Instance();
    m_pCurDoc = nullptr;
    for (QRulerView* view : qAsConst(m_Docs)) {
        view->disconnect(this);
        delete view;
    }
    m_FirstLoad = 0;
}

void MainWindow::InitMainWindow() {
    InitCustomWindow();
    ReadRecentFile();
    countTime();
    ResetLayerData();
    connect(&m_SecondTimer, &QTimer::timeout, this, &MainWindow::countTime);
    connect(Form_Marking::Instance(), &Form_Marking::StopStateChanged, this, &MainWindow::OnStopStateChanged);
    connect(this, &MainWindow::MoveMarkWnd2Center, this, &MainWindow::onMoveMarkWnd2Center);
    m_SecondTimer.start(kSecondMs);
    if (QScreen const* screen = QGuiApplication::primaryScreen())
        setGeometry(tessera::WindowRect(screen->geometry()));
    AuthorityManager::StartAutoLoginOut();
    m_KeyThread.Start();
    // not before the run dialog is there, which a stop from another thread asks for
    tessera::DelayedStop::SetCurrent(m_pDelayedStop);
}

void MainWindow::StartUp() {
    const int mode = SystemParam::Instance()->GetStartUpMark();
    MarkLog::Instance()->ShowNode(NoteDebug, QStringLiteral("开软件启动方式:") + QString::number(mode));
    if (mode == 1)
        ShowNormalMarkWindow();
    if (mode == 2) {
        ShowMultDocMarkWindow();
        if (MarkWindowIsVisible() == 2)
            MultiDocMark::Instance()->StartMark();
        return;
    }
    SetReadyOut(0);
}

/// Only leaves word; the destructors of the threads wait.
void MainWindow::CloseThread() {
    if (m_pInputThread)
        m_pInputThread->EndThread();
    m_KeyThread.Stop();
}

void MainWindow::GetCurMirrorPt(QPointF point) {
    if (MainWindow* window = m_pInstance)
        emit window->SetCurMirrorPos(point);
}

void MainWindow::ReadVersion() {
    m_DebugFile.setFileName(tessera::rootPath(QStringLiteral("/日志文件/Debug.txt")));
    m_Version = QStringLiteral("1.0.0");
    QFile file(tessera::rootPath(QStringLiteral("/version.ini")));
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        m_Version = QString::fromUtf8(file.readLine()).remove(QLatin1Char('\n'));
}

/// The file is written from its head on; what an earlier run left behind that stays.
void MainWindow::OpenDebugFile() {
    QDir().mkpath(tessera::rootPath(QStringLiteral("/日志文件")));
    if (!m_DebugFile.open(QIODevice::ReadWrite | QIODevice::Text)) {
        MarkLog::Instance()->ShowNote_Error(m_DebugFile.fileName() + QStringLiteral(": ") + m_DebugFile.errorString());
        return;
    }
    m_pDebugStream = std::make_unique<QTextStream>(&m_DebugFile);
    m_pDebugStream->setCodec("UTF-8");
}

void MainWindow::SaveDebugText(QString const& text) {
    const std::lock_guard<std::mutex> lock(m_DebugLock);
    if (m_pDebugStream)
        *m_pDebugStream << text << Qt::endl;
}

void MainWindow::StartCommandServer() {
    qRegisterMetaType<CCSCmd>("CCSCmd");
    if (commandServerWanted())
        InitServer();
}

void MainWindow::ConnectRemoteOrders() {
    ExternalResponse* response = ExternalResponse::Instance();
    connect(response, &ExternalResponse::EnableMarkAction, this, &MainWindow::on_EnableMarkAction);
    response->OpenOrders();
}

void MainWindow::on_EnableMarkAction(bool enable) {
    ui->actionMark->setEnabled(enable);
    ui->actionMultiDocMark->setEnabled(enable);
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (m_FirstLoad++ == 0) {
        m_pInputThread = std::make_unique<UpdateInputThread>(this);
        m_pInputThread->start();
        QTimer::singleShot(kHistoryBeginMs, m_pAlarmRecorder.get(), &tessera::AlarmRecorder::Begin);
    }
    m_nTimerId = startTimer(100);
    PlaceLabels(ui->toolBar, 140);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (m_nTimerId >= 0)
        killTimer(m_nTimerId);
    m_nTimerId = -1;
    QMainWindow::closeEvent(event);
}

void MainWindow::timerEvent(QTimerEvent*) {}

QMenu* MainWindow::createPopupMenu() {
    return nullptr;
}

void MainWindow::AutoLoginOut() {
    emit UserChanged();
}

void MainWindow::UserChange() {
    emit UserChanged();
}

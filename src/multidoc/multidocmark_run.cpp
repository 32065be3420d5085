// SPDX-License-Identifier: MIT
#include "engine/imarkcardbase.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "multidoc/multidocmark.h"
#include "run/delayedstop.h"
#include "shell/mainwindow.h"
#include "ui_multidocmark.h"

#include <QCloseEvent>
#include <QMessageBox>

namespace {

/// Time that a contact has to settle.
constexpr unsigned long kDebounceMs = 10;
/// Odd, so that every digit of the time is seen to move.
constexpr int kTimePeriodMs = 31;
constexpr int kStatusPeriodMs = 500;
/// Numbers of dots behind the status text.
constexpr int kDotSteps = 6;
/// Pause between the operator's order to stop and the stop.
constexpr int kStopDelayMs = 1000;
/// Yellow letters need a dark ground.
constexpr QRgb kDarkGround = 0xff303a44;
constexpr QRgb kLightGround = 0xffffffff;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

char const* statusKey(MultiMarkStatus status) {
    switch (status) {
    case MultiMarkWaiting:
        return "等待中";
    case MultiMarkMarking:
        return "打标中";
    case MultiMarkIdle:
        break;
    }
    return "空闲中";
}

} // namespace

std::atomic<MultiDocMark*> MultiDocMark::m_pMulDocMarking{nullptr};

void MultiDocMark::InitWindow(QWidget* parent) {
    if (!m_pMulDocMarking)
        m_pMulDocMarking = new MultiDocMark(parent);
}

MultiDocMark::MultiDocMark(QWidget* parent)
    : VZDialog(parent)
    , ui(std::make_unique<Ui_MultiDocMark>()) {
    ui->setupUi(this);
    m_pHeader = new tessera::ProjectHeader(this);
    ui->layoutList->insertWidget(0, m_pHeader);
    ui->listWidget->setItemDelegate(new tessera::ProjectDelegate(ui->listWidget));
    Connect();
    ui->labelRunCount->installEventFilter(this);
    SetUIText();
    ShowStatusColor(Qt::black);
    m_nTimerId = startTimer(kStatusPeriodMs, Qt::CoarseTimer);
    ReadRecent();
}

MultiDocMark::~MultiDocMark() {
    m_Thread.disconnect(this);
    m_pMulDocMarking = nullptr;
}

void MultiDocMark::Connect() {
    connect(&m_Thread, &MultiMarkThread::markstatusChange, this, &MultiDocMark::OnMarkstatusChange,
            Qt::QueuedConnection);
    connect(&m_Thread, &MultiMarkThread::test, this, &MultiDocMark::OnTest, Qt::QueuedConnection);
    connect(&m_Timer, &QTimer::timeout, this, &MultiDocMark::update);
    connect(ui->pushButtonClose, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->actionNewProject, &QAction::triggered, this, &MultiDocMark::OnNew);
    connect(ui->actionOpenProject, &QAction::triggered, this, &MultiDocMark::OnOpen);
    connect(ui->actionSaveProject, &QAction::triggered, this, &MultiDocMark::OnSave);
    connect(ui->actionSaveProjectAs, &QAction::triggered, this, &MultiDocMark::OnSaveAs);
    connect(ui->actionManageProjects, &QAction::triggered, this, &MultiDocMark::OnMangerFile);
}

void MultiDocMark::SetUIText() {
    UpDateWindowText();
    ui->actionNewProject->setText(text("新建"));
    ui->actionOpenProject->setText(text("打开"));
    ui->actionSaveProject->setText(text("保存"));
    ui->actionSaveProjectAs->setText(text("另存为"));
    ui->actionManageProjects->setText(text("文档管理"));
    ui->pushButtonAdd->setText(text("添加"));
    ui->pushButtonEdit->setText(text("编辑"));
    ui->pushButtonDel->setText(text("删除"));
    ui->pushButtonMoveUp->setText(text("上移"));
    ui->pushButtonMoveDown->setText(text("下移"));
    ui->pushButtonClose->setText(text("退出"));
    m_pHeader->SetTexts(text("文档"), text("最近运行"), text("运行次数"));
    ShowClashes();
    ui->labelTimeText->setText(text("单个时间"));
    ui->labelRunCountText->setText(text("运行次数"));
    ui->pushButtonRun->setText(text("运行") + QStringLiteral("(F6)"));
    ui->pushButtonStop->setText(text("停止") + QStringLiteral("(F8)"));
    ui->pushButtonStopMark->setText(text("停止运行"));
    ui->checkBoxRed->setText(text("红光预览"));
    ui->labelTrigerIndex->setText(text("触发序号"));
    ui->pushButtonTriger0->setText(text("手动触发"));
    ShowStatusText();
}

void MultiDocMark::setVisible(bool visible) {
    VZDialog::setVisible(visible);
    m_bShown = isVisible();
}

void MultiDocMark::reject() {
    if (GetMarkStatus() == MultiMarkIdle)
        VZDialog::reject();
}

/// Kept: the ready output goes off on the attempt, also when the window then stays.
void MultiDocMark::closeEvent(QCloseEvent* event) {
    IOOutputSet const* outputs = IOOutputSet::Instance();
    if (outputs->EnableReadyOut())
        MarkCardInstance::Instance()->SetOutputBit(outputs->GetReadyOut(), 0);
    event->setAccepted(GetMarkStatus() == MultiMarkIdle);
}

MultiMarkStatus MultiDocMark::GetMarkStatus() const {
    const std::lock_guard<std::mutex> lock(m_StatusLock);
    return m_Status;
}

void MultiDocMark::SetMarkStatus(MultiMarkStatus status) {
    const std::lock_guard<std::mutex> lock(m_StatusLock);
    m_Status = status;
}

void MultiDocMark::InputChange(unsigned int input) {
    m_Rule.InputChange(input, m_Docs, *this);
}

bool MultiDocMark::isSafe() {
    return MainWindow::Instance()->CheckAlarmStatus();
}

unsigned int MultiDocMark::settledInput() {
    QThread::msleep(kDebounceMs);
    return MarkCardInstance::Instance()->GetInput();
}

/// Asked of the worker itself: its status comes by a message, behind what the first poll of a run finds and before what
/// the last one does.
bool MultiDocMark::isIdle() {
    return !IsRunOn();
}

bool MultiDocMark::isOpen(QString const& name) {
    return MainWindow::Instance()->GetDoc(name) != nullptr;
}

void MultiDocMark::queueDocument(TrigerDoc const& doc) {
    if (m_Thread.AddMarkFile(MainWindow::Instance()->GetDoc(doc.m_FileName)))
        m_Runs.Triggered(doc.m_FileName, &doc);
}

void MultiDocMark::note(QString const& text) {
    MarkLog::Instance()->ShowNode(NoteRun, text);
}

/// The card has one register for the kind of a job: the documents' laser and the preview of another run must not meet
/// there.
void MultiDocMark::StartMark() {
    if (m_Thread.isRunning() || MainWindow::Instance()->IsJobUnderWay())
        return;
    for (TrigerDoc const* doc : qAsConst(m_Docs))
        MainWindow::Instance()->OpenFile(doc->m_FileName);
    SetUI(true);
    m_Rule.SetLastInput(MarkCardInstance::Instance()->GetInput());
    m_Thread.ClearMarkFile();
    m_Thread.SetMarkType(ui->checkBoxRed->isChecked() ? MarkTypeRedPreview : MarkTypeLaser);
    m_Thread.StartRun();
}

void MultiDocMark::StopMark() {
    m_Thread.ClearMarkFile();
    m_Thread.StopMark();
}

void MultiDocMark::SetUI(bool running) {
    for (QWidget* widget : {static_cast<QWidget*>(ui->toolBarProject), static_cast<QWidget*>(ui->listWidget),
                            static_cast<QWidget*>(ui->pushButtonAdd), static_cast<QWidget*>(ui->pushButtonDel),
                            static_cast<QWidget*>(ui->pushButtonMoveUp), static_cast<QWidget*>(ui->pushButtonMoveDown),
                            static_cast<QWidget*>(ui->pushButtonEdit), static_cast<QWidget*>(ui->pushButtonRun),
                            static_cast<QWidget*>(ui->checkBoxRed)})
        widget->setEnabled(!running);
    ui->pushButtonStop->setEnabled(running);
    MainWindow::Instance()->SetMarkStatus(running);
}

void MultiDocMark::on_pushButtonRun_clicked() {
    StartMark();
}

void MultiDocMark::on_pushButtonStop_clicked() {
    m_Thread.EndThread();
    m_Thread.wait();
    SetUI(false);
}

void MultiDocMark::on_pushButtonStopMark_clicked() {
    if (const std::shared_ptr<tessera::DelayedStop> stop = tessera::DelayedStop::Current())
        stop->Order(kStopDelayMs);
}

void MultiDocMark::on_pushButtonTriger0_clicked() {
    const int index = ui->spinBoxTrigerIndex->value();
    if (isIdle() || !isSafe() || index >= m_Docs.size())
        return;
    if (isOpen(m_Docs.at(index)->m_FileName))
        queueDocument(*m_Docs.at(index));
}

/// Kept for the buttons' names alone: nothing is shown of them.
void MultiDocMark::on_pushButtonTriger1_clicked() {
    GetMarkStatus();
}

void MultiDocMark::on_pushButton_3_clicked() {
    GetMarkStatus();
}

void MultiDocMark::OnTest(int) {}

/// For a machine builder to connect who wants to see the inputs some time after a change.
void MultiDocMark::OnInputChange(unsigned int) {
    QThread::sleep(static_cast<unsigned long>(m_nDelay));
    MarkCardInstance::Instance()->GetInput();
}

void MultiDocMark::OnMarkstatusChange(int status, QString const& file) {
    SetMarkStatus(static_cast<MultiMarkStatus>(status));
    switch (status) {
    case MultiMarkWaiting:
        ShowStatusColor(Qt::yellow);
        m_Timer.stop();
        ShowRuns(m_Runs.End());
        if (m_Thread.GetRunning())
            emit SendRunData();
        break;
    case MultiMarkMarking:
        BeginDocument(file);
        break;
    default:
        m_Timer.stop();
        ShowStatusColor(Qt::black);
        break;
    }
}

void MultiDocMark::BeginDocument(QString const& file) {
    const QList<QListWidgetItem*> rows = ui->listWidget->findItems(file, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (!rows.isEmpty())
        ui->listWidget->setCurrentItem(rows.first());
    ShowRuns(m_Runs.Begin(file, m_Docs));
    m_StartTime = QDateTime::currentDateTime();
    m_nElapsed = 0;
    m_Timer.start(kTimePeriodMs);
    ShowStatusColor(Qt::red);
    ++m_nRunCount;
    ShowRunCount();
}

void MultiDocMark::update() {
    if (!m_StartTime.isValid())
        return;
    const QDateTime now = QDateTime::currentDateTime();
    m_nElapsed += m_StartTime.msecsTo(now);
    m_StartTime = now;
    ui->labelTime->setText(QString::number(m_nElapsed));
}

void MultiDocMark::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_nTimerId) {
        VZDialog::timerEvent(event);
        return;
    }
    m_nDots = (m_nDots + 1) % kDotSteps;
    ShowStatusText();
}

void MultiDocMark::ShowStatusText() {
    ui->labelStatus->setText(text(statusKey(GetMarkStatus())) + QString(m_nDots, QLatin1Char('.')));
}

void MultiDocMark::ShowStatusColor(Qt::GlobalColor color) {
    QPalette palette = ui->labelStatus->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::Window, QColor(color == Qt::yellow ? kDarkGround : kLightGround));
    ui->labelStatus->setPalette(palette);
}

void MultiDocMark::ShowRunCount() {
    ui->labelRunCount->setText(QString::number(m_nRunCount));
}

bool MultiDocMark::eventFilter(QObject* watched, QEvent* event) {
    if (watched != ui->labelRunCount || event->type() != QEvent::MouseButtonDblClick ||
        GetMarkStatus() == MultiMarkMarking)
        return VZDialog::eventFilter(watched, event);
    if (QMessageBox::information(this, text("提示"), text("是否将运行次数清零"), QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::Yes) == QMessageBox::Yes) {
        m_nRunCount = 0;
        ShowRunCount();
    }
    return true;
}

// SPDX-License-Identifier: MIT
#include "run/form_marking.h"

#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/systemparam.h"
#include "shell/mainwindow.h"
#include "ui_form_marking.h"

#include <QCloseEvent>
#include <QMessageBox>

namespace {

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

Form_Marking* Form_Marking::m_pFormMarking = nullptr;

void Form_Marking::InitWindow(QWidget* parent) {
    if (!m_pFormMarking)
        m_pFormMarking = new Form_Marking(parent);
}

void Form_Marking::ShowWindow(QWidget* parent) {
    InitWindow(parent);
    m_pFormMarking->show();
}

Form_Marking::Form_Marking(QWidget* parent)
    : VZDialog(parent)
    , ui(new Ui_FormMarking) {
    ui->setupUi(this);
    Connect();
    ui->labelRunCnt->installEventFilter(this);
    ui->pushButtonMoveUp->setIcon(QIcon(QStringLiteral(":/Icon/Res/uparrow.png")));
    ui->pushButtonMoveDown->setIcon(QIcon(QStringLiteral(":/Icon/Res/downarrow.png")));
    ui->radioButtonRun->setChecked(true);
    ShowCounter();
    ui->labelRunTime->setText(QStringLiteral("0"));
    SetUIText();
    SetIdleUI();
    ChangeFormSize();
    FollowOptions();
}

Form_Marking::~Form_Marking() {
    m_Thread.disconnect(this);
    for (QFuture<void>& step : m_AxisSteps)
        step.waitForFinished();
    m_pFormMarking = nullptr;
}

void Form_Marking::Connect() {
    m_Thread.SetHoldUntilCounted(true);
    connect(&m_Thread, &MarkingThread::markstart, this, &Form_Marking::OnMarkStart, Qt::QueuedConnection);
    connect(&m_Thread, &MarkingThread::markRestart, this, &Form_Marking::OnReMarkStart, Qt::QueuedConnection);
    connect(&m_Thread, &MarkingThread::markpause, this, &Form_Marking::OnMarkPause, Qt::QueuedConnection);
    connect(&m_Thread, &MarkingThread::markfinish, this, &Form_Marking::OnMarkFinish, Qt::QueuedConnection);
    connect(&m_Thread, &MarkingThread::markFinishUI, this, &Form_Marking::OnMarkFinishUI, Qt::QueuedConnection);
    connect(&m_Thread, &MarkingThread::markrunspecial, this, &Form_Marking::OnMarkRunSpecial, Qt::QueuedConnection);
    connect(&m_StopWatcher, &tessera::StopWatcher::Changed, this, &Form_Marking::OnStopStateChanged);
    m_Timer.setObjectName(QStringLiteral("displayTimer"));
    connect(&m_Timer, &QTimer::timeout, this, &Form_Marking::update);
    connect(ui->radioButtonRedPre, &QRadioButton::toggled, this, &Form_Marking::FollowOptions);
    connect(ui->radioButtonBox, &QRadioButton::toggled, this, &Form_Marking::FollowOptions);
    connect(ui->checkBoxSelectMarking, &QCheckBox::toggled, this, &Form_Marking::FollowOptions);
    connect(ui->pushButtonMoveUp, &QPushButton::pressed, this, &Form_Marking::OnUpPressed);
    connect(ui->pushButtonMoveUp, &QPushButton::released, this, &Form_Marking::OnUpReleased);
    connect(ui->pushButtonMoveDown, &QPushButton::pressed, this, &Form_Marking::OnDownPressed);
    connect(ui->pushButtonMoveDown, &QPushButton::released, this, &Form_Marking::OnDownReleased);
}

void Form_Marking::SetUIText() {
    setWindowTitle(text("运行框"));
    ui->labelCount->setText(text("执行次数"));
    ui->labelTime->setText(text("执行时间"));
    ui->radioButtonRun->setText(text("工作") + QStringLiteral("(F6)"));
    ui->radioButtonRedPre->setText(text("红光预览") + QStringLiteral("(F7)"));
    ui->radioButtonBox->setText(text("边框预览"));
    ui->checkBoxSelectMarking->setText(text("选中工作"));
    ui->checkBoxLoopMark->setText(text("循环工作"));
    ui->labelLoopDelay->setText(text("循环间隔"));
    ui->pushButtonStart->setText(text(m_Thread.IsGoingOn() ? "暂停" : "开始") + QStringLiteral("(F6)"));
    ui->pushButtonStop->setText(text("终止") + QStringLiteral("(F8)"));
    ui->pushButtonCancel->setText(text("退出") + QStringLiteral("(Esc)"));
    ui->pushButtonStopAxis->setText(text("停止"));
}

void Form_Marking::StartMark(bool redLoopTrigger) {
    MainWindow* window = MainWindow::Instance();
    window->MoveMarkWindowToCenter(false);
    if (!window->CheckAlarmStatus())
        return;
    SelectKind(0);
    m_Thread.RunTrigerOnly(ui->checkBoxSelectMarking->isChecked(), ui->checkBoxLoopMark->isChecked(),
                           ui->spinBox->value(), MarkTypeLaser, redLoopTrigger);
}

void Form_Marking::StartMarkPreview() {
    SelectKind(1);
    const bool paused = m_Thread.IsPaused();
    m_Thread.RunTrigerOnly(ui->checkBoxSelectMarking->isChecked(), ui->checkBoxLoopMark->isChecked(),
                           ui->spinBox->value(), MarkTypeRedPreview, false);
    // While this thread waits no message reaches it: a job that was paused is set going here, or it would never end.
    if (paused)
        OnReMarkStart();
    // It counts nothing either, so the passes are not to wait for it.
    m_Thread.SetHoldUntilCounted(false);
    m_Thread.wait();
    m_Thread.SetHoldUntilCounted(true);
}

void Form_Marking::StartMarkPreview(bool select, bool loop, int delay, MarkType type) {
    SelectKind(1);
    ui->checkBoxSelectMarking->setChecked(select);
    ui->checkBoxLoopMark->setChecked(loop);
    ui->spinBox->setValue(delay);
    m_Thread.RunTrigerOnly(select, loop, delay, type, false);
}

/// The command comes first; what is shown of it follows.
void Form_Marking::StopMark() {
    const bool active = m_Thread.IsActive();
    const std::int64_t ordered = tessera::StopWatcher::Now();
    m_Thread.StopTriger();
    m_Thread.SetEnableTriggerWhenRedLoop(false);
    if (active)
        m_StopWatcher.Ordered(ordered);
}

void Form_Marking::StopAndWait() {
    if (!m_Thread.IsActive())
        return;
    StopMark();
    m_Thread.wait();
}

void Form_Marking::PauseMark() {
    m_Thread.PauseTriger();
}

void Form_Marking::ReStartMark() {
    m_Thread.ReStartTriger();
}

bool Form_Marking::IsRedLoopRun() const {
    return ui->checkBoxLoopMark->isChecked() && ui->radioButtonRedPre->isChecked() &&
           MarkCardInstance::Instance()->GetMarkStatus() != MarkStatusStop;
}

void Form_Marking::SetRunSelection(int kind, bool loop) {
    SelectKind(kind);
    ui->checkBoxLoopMark->setChecked(loop);
}

void Form_Marking::SetEnableTriggerWhenRedLoop(bool on) {
    m_Thread.SetEnableTriggerWhenRedLoop(on);
}

void Form_Marking::UpdateRedViewData() {
    m_Thread.StopTrigerVirtual();
}

void Form_Marking::ChangeFormSize() {
    const bool debug = SystemParam::Instance()->GetMarkDebugMode();
    ui->pushButtonMoveUp->setVisible(debug);
    ui->pushButtonMoveDown->setVisible(debug);
    ui->doubleSpinBoxStep->setVisible(debug);
    ui->pushButtonStopAxis->setVisible(debug);
    setFixedSize(debug ? 580 : 385, 180);
}

void Form_Marking::setVisible(bool visible) {
    VZDialog::setVisible(visible);
    m_bShown = isVisible();
}

void Form_Marking::reject() {
    if (m_bCanExit)
        VZDialog::reject();
}

void Form_Marking::closeEvent(QCloseEvent* event) {
    event->setAccepted(m_bCanExit);
}

/// No key reaches the dialog's buttons: the function keys belong to the main window, and Esc must not close a run.
void Form_Marking::keyPressEvent(QKeyEvent*) {}

bool Form_Marking::eventFilter(QObject* watched, QEvent* event) {
    if (watched != ui->labelRunCnt || event->type() != QEvent::MouseButtonDblClick || m_Thread.IsActive())
        return VZDialog::eventFilter(watched, event);
    if (QMessageBox::question(this, text("提示"), text("是否清空运行个数计数?"), QMessageBox::Yes | QMessageBox::No) ==
        QMessageBox::Yes)
        StoreCounter(0);
    return true;
}

void Form_Marking::on_pushButtonStart_clicked() {
    if (!MainWindow::Instance()->CheckAlarmStatus())
        return;
    m_Thread.RunTriger(ui->checkBoxSelectMarking->isChecked(), ui->checkBoxLoopMark->isChecked(), ui->spinBox->value(),
                       SelectedType());
}

void Form_Marking::on_pushButtonStop_clicked() {
    StopMark();
}

void Form_Marking::on_pushButtonCancel_clicked() {
    close();
}

void Form_Marking::SelectKind(int kind) {
    ui->radioButtonRun->setChecked(kind == 0);
    ui->radioButtonRedPre->setChecked(kind == 1);
    ui->radioButtonBox->setChecked(kind != 0 && kind != 1);
}

/// Copies of the options for the threads that ask for them.
void Form_Marking::FollowOptions() {
    m_bRedView = ui->radioButtonRedPre->isChecked() || ui->radioButtonBox->isChecked();
    m_bSelect = ui->checkBoxSelectMarking->isChecked();
}

MarkType Form_Marking::SelectedType() const {
    if (ui->radioButtonRedPre->isChecked())
        return MarkTypeRedPreview;
    return ui->radioButtonBox->isChecked() ? MarkTypeBorderPreview : MarkTypeLaser;
}

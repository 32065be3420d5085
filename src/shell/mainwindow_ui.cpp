// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "editing/marklayerparamform.h"
#include "editing/marktoolproperty.h"
#include "engine/externmodules.h"
#include "engine/glassparam.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "files/filelistview.h"
#include "shell/alarmctrl.h"
#include "shell/alarmhistorydialog.h"
#include "shell/cardmirrorstatus.h"
#include "shell/lamppixmap.h"
#include "shell/lazyicon.h"
#include "shell/leftpanel.h"
#include "shell/mainwindow_texts.h"
#include "shell/qttexts.h"
#include "shell/rightpanel.h"
#include "shell/statuseview.h"
#include "shell/statuszones.h"
#include "shell/toolbarstyle.h"
#include "shell/toolwindowkeys.h"
#include "shell/windowgeometry.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QResizeEvent>

namespace {

constexpr int kRightPanelWidth = 245;
constexpr int kLabelWidth = 200;
constexpr int kStopLabelHeight = 26;
constexpr int kRightPanelColumn = 4;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

QLabel* wideLabel(QWidget* parent, QString const& content) {
    auto* label = new QLabel(content, parent);
    label->setMinimumWidth(kLabelWidth);
    return label;
}

QLabel* lampLabel(QWidget* parent, QPixmap const& pixmap) {
    auto* label = new QLabel(parent);
    label->setPixmap(pixmap);
    return label;
}

} // namespace

/// Before the first widget is there: each would be styled anew. The font is the application's and not the style
/// sheet's, which would overrule the sizes that labels set.
void MainWindow::DressApplication() {
    QApplication::setStyle(QStringLiteral("fusion"));
    QFont font = QApplication::font();
    font.setFamilies({QStringLiteral("Noto Sans CJK SC"), QStringLiteral("WenQuanYi Micro Hei")});
    font.setPixelSize(14);
    QApplication::setFont(font);
    QFile file(QStringLiteral(":/myQSS.qss"));
    if (file.open(QIODevice::ReadOnly))
        qApp->setStyleSheet(QString::fromUtf8(file.readAll()));
}

void MainWindow::BuildPanels() {
    m_pRightPanel = new RightPanel(this);
    m_pRightPanel->setObjectName(QStringLiteral("widgetRight"));
    m_pRightPanel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    m_pRightPanel->setFixedWidth(kRightPanelWidth);
    ui->gridLayout->addWidget(m_pRightPanel, 0, kRightPanelColumn);
    for (QToolBar* bar : {ui->toolbar_AddMarkTool, ui->toolBarAuxiliary})
        tessera::WidenExtension(bar);
    m_pLeftPanel = new LeftPanel(this);
    ui->verticalLayout->addWidget(m_pLeftPanel);
    m_pFileList = new FileListView(this);
    m_pLeftPanel->AddFileWidged(m_pFileList);
    m_pStatusView = new StatuseView(this);
    m_pLeftPanel->AddStatusWidged(m_pStatusView);
}

void MainWindow::BuildRightPages() {
    // made inside the panel: a page that gets its parent later is styled twice
    SetRightPages(new MarkToolProperty(m_pRightPanel), nullptr, new MarkLayerParamForm(m_pRightPanel));
}

MarkToolProperty* MainWindow::ToolProperty() const {
    return qobject_cast<MarkToolProperty*>(m_pToolProperty.data());
}

MarkLayerParamForm* MainWindow::LayerForm() const {
    return qobject_cast<MarkLayerParamForm*>(m_pLayerForm.data());
}

void MainWindow::ResetLayerData() {
    if (MarkLayerParamForm* form = LayerForm())
        form->ResetLayerData();
}

void MainWindow::SetRightPages(QWidget* toolProperty, QWidget* motion, QWidget* layerForm) {
    for (QWidget* former : {m_pToolProperty.data(), m_pMotion.data(), m_pLayerForm.data()}) {
        if (former != toolProperty && former != motion && former != layerForm)
            delete former;
    }
    m_pToolProperty = toolProperty;
    m_pMotion = motion;
    m_pLayerForm = layerForm;
    for (QWidget* page : {toolProperty, motion, layerForm}) {
        if (page)
            m_pRightPanel->AddWnd(page);
    }
    EnableRightPages(false, false);
    on_rightWigetSizeChange(nullptr);
    if (m_pCurDoc)
        OnUserChanged();
}

void MainWindow::on_rightWigetSizeChange(QResizeEvent*) {
    const tessera::RightPageRects rects =
        tessera::RightPages(m_pRightPanel->size(), m_pMotion ? m_pMotion->height() : -1);
    if (m_pToolProperty)
        m_pToolProperty->setGeometry(rects.toolProperty);
    if (m_pMotion)
        m_pMotion->setGeometry(rects.motion);
    if (m_pLayerForm)
        m_pLayerForm->setGeometry(rects.layerForm);
}

void MainWindow::EnableRightPages(bool toolProperty, bool layerForm) {
    if (m_pToolProperty)
        m_pToolProperty->setEnabled(toolProperty);
    if (m_pLayerForm)
        m_pLayerForm->setEnabled(layerForm);
}

void MainWindow::BuildLabels() {
    m_pCardStateLabel = new QLabel(this);
    m_pCardStateLabel->setObjectName(QStringLiteral("labelCardState"));
    m_pTimeLabel = new QLabel(ui->statusbar);
    m_pTimeLabel->setObjectName(QStringLiteral("labelTime"));
    m_pTimeLabel->setAlignment(Qt::AlignCenter);
    m_pSelectCntLabel = wideLabel(this, QString());
    m_pMousePosLabel = wideLabel(this, QStringLiteral("X:0.000,Y0.000"));
    m_pBufferTimeLabel = wideLabel(this, QStringLiteral("BT:0.000ms"));
    m_pSpareLabel = wideLabel(this, QString());
    m_pSoftVersionLabel = new QLabel(this);
    m_pCardVersionLabel = new QLabel(this);
    m_pCardStatusLabel = new QLabel(this);
    m_RedPixmap = tessera::LampPixmap("red");
    m_GreenPixmap = tessera::LampPixmap("green");
    m_YellowPixmap = tessera::LampPixmap("yellow");
    m_pRedLabel = lampLabel(this, m_RedPixmap);
    m_pGreenLabel = lampLabel(this, m_GreenPixmap);
    m_pYellowLabel = lampLabel(this, m_YellowPixmap);
    const struct {
        QLabel* label;
        char const* name;
    } names[] = {{m_pSelectCntLabel, "labelSelectCnt"},     {m_pMousePosLabel, "labelMousePos"},
                 {m_pBufferTimeLabel, "labelBufferTime"},   {m_pSpareLabel, "labelSpare"},
                 {m_pSoftVersionLabel, "labelSoftVersion"}, {m_pCardVersionLabel, "labelCardVersion"},
                 {m_pCardStatusLabel, "labelCardStatus"},   {m_pRedLabel, "labelRedLamp"},
                 {m_pGreenLabel, "labelGreenLamp"},         {m_pYellowLabel, "labelYellowLamp"}};
    for (auto const& entry : names)
        entry.label->setObjectName(QString::fromLatin1(entry.name));
}

/// Beside the clock, where it moves nothing when it comes up.
void MainWindow::BuildStopLabel() {
    m_pStopLabel = new QLabel(m_pSpareLabel);
    m_pStopLabel->setObjectName(QStringLiteral("labelStopState"));
    m_pStopLabel->setMinimumHeight(kStopLabelHeight);
    m_pStopLabel->hide();
    auto* layout = new QHBoxLayout(m_pSpareLabel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pStopLabel, 0, Qt::AlignLeft | Qt::AlignVCenter);
}

void MainWindow::BuildAlarmCtrls() {
    m_pLaserAlarm = new AlarmCtrl(this);
    m_pLaserAlarm->setObjectName(QStringLiteral("alarmLaser"));
    m_pLaserAlarm->SetClickable(true);
    m_pLaserAlarm->SetStatus(AlarmGreen, text("激光器正常"));
    m_pSafeAlarm = new AlarmCtrl(this);
    m_pSafeAlarm->setObjectName(QStringLiteral("alarmSafe"));
    m_pSafeAlarm->SetStatus(AlarmGreen, text("安全报警"));
    m_pSafeAlarm->installEventFilter(this);
}

void MainWindow::FillStatusBar() {
    auto* zones = new tessera::StatusZones(ui->statusbar);
    for (QLabel* label : {m_pSelectCntLabel, m_pMousePosLabel, m_pBufferTimeLabel})
        zones->AddLeft(label);
    zones->SetMiddle(m_pSpareLabel);
    GlassParam::Instance()->SetShowLaserAlarm(true);
    for (QLabel* lamp : {m_pGreenLabel, m_pYellowLabel, m_pRedLabel})
        zones->AddRight(lamp, false);
    zones->AddRight(m_pLaserAlarm, true);
    zones->AddRight(m_pSafeAlarm, true);
    zones->AddRight(m_pCardVersionLabel, false);
    zones->AddRight(m_pSoftVersionLabel, false);
    zones->AddRight(m_pCardStatusLabel, true);
    ui->statusbar->addWidget(zones, 1);
    ui->statusbar->installEventFilter(this);
}

void MainWindow::ShowVersions() {
    m_pSoftVersionLabel->setText(text("软件版本号") + QStringLiteral(":") + m_Version + QStringLiteral("  "));
    m_pCardStatusLabel->setText(text("卡/振镜状态"));
    m_pCardStatusLabel->setStyleSheet(QStringLiteral("QLabel{ color:blue}"));
    m_pCardStatusLabel->installEventFilter(this);
    ui->actionSetBackImage->setText(text("设置背景图"));
}

void MainWindow::PrepareTools() {
    QRulerView::Init();
    LoadExternToolModules();
    initMarkTool();
    initSlotSingle();
    SetSelectObjCnt(0);
    UnSelectAllTooll();
    ui->Select->setChecked(true);
    ui->toolbar_AddMarkTool->setEnabled(false);
    SetIcons();
    SetUIText();
}

void MainWindow::ConnectOwnSignals() {
    connect(m_pRightPanel, &RightPanel::SizeChanged, this, &MainWindow::on_rightWigetSizeChange);
    connect(m_pLaserAlarm, &AlarmCtrl::clicked, this, &MainWindow::on_laserAlarm_clicked);
    connect(m_pFileList, &FileListView::ActivDocChanged, this, &MainWindow::on_ActivDocChanged);
    connect(m_pFileList, &FileListView::ClosedFile, this, &MainWindow::on_CloseFile);
    connect(m_pFileList, &FileListView::ChangeFileIndex, this, &MainWindow::OnChangeFileIndex);
    new tessera::ToolWindowKeys(*this);
    connect(this, &MainWindow::UserChanged, this, &MainWindow::OnUserChanged);
    connect(this, &MainWindow::TimerUpDate, this, &MainWindow::OnTimerUpDate);
    connect(this, &MainWindow::ResetAlarmStatus, this, &MainWindow::OnResetAlarmStatus);
}

void MainWindow::ShowUserMenu() {
    const bool enabled = SystemParam::Instance()->IsEnableUserManager();
    ui->menuUserManager->menuAction()->setVisible(enabled);
}

void MainWindow::ShowOptionalItems() {
    SystemParam const* system = SystemParam::Instance();
    ui->action_LaserHostLayin->setVisible(system->GetEnableLayLaser());
    ui->action_LaserHostMAX->setVisible(system->EnableLaserHost_MAX() != 0);
    onCodeToolVisible();
    onFlyMarkSetteingVisible();
    onSplitLaserSetVisible();
    IsShowDoc();
    ui->actionShowDoc->setChecked(m_bShowDoc);
    ui->tabWidgetMian->setTabVisible(ui->tabWidgetMian->count() - 1, m_bShowDoc);
}

void MainWindow::SetIcons() {
    for (tessera::MenuEntry const& entry : tessera::MenuEntries())
        tessera::EnlargePictures((*ui).*entry.menu);
    for (tessera::ActionEntry const& entry : tessera::ActionEntries())
        ((*ui).*entry.action)
            ->setIcon(tessera::LazyIcon(QStringLiteral(":/Icon/Res/%1.png").arg(QLatin1String(entry.icon))));
}

void MainWindow::SetUIText() {
    if (!tessera::SetQtLanguage(LanguageManager::GetCurrentLan()))
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("no texts of the tool kit in ") +
                                            LanguageManager::GetCurrentLan());
    for (tessera::ActionEntry const& entry : tessera::ActionEntries())
        ((*ui).*entry.action)->setText(text(entry.key));
    for (tessera::MenuEntry const& entry : tessera::MenuEntries())
        ((*ui).*entry.menu)->setTitle(text(entry.key));
    ui->tabWidgetMian->setTabText(ui->tabWidgetMian->indexOf(ui->tabFile), text("文档"));
    ui->tabWidgetMian->setTabText(ui->tabWidgetMian->indexOf(ui->tabDoc), text("说明书"));
    m_pFileList->SetUIText();
    if (m_pAlarmHistory)
        m_pAlarmHistory->SetUIText();
    SetPluginTexts();
    if (MarkToolProperty* page = ToolProperty())
        page->SetUIText();
    if (MarkLayerParamForm* page = LayerForm())
        page->ResetUI();
    m_pCardStatusLabel->setText(text("卡/振镜状态"));
    m_pSoftVersionLabel->setText(text("软件版本号") + QStringLiteral(":") + m_Version + QStringLiteral("  "));
}

void MainWindow::countTime() {
    m_pTimeLabel->setText(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
}

void MainWindow::ToggleCardStatus() {
    CardMirrorStatus* status = CardMirrorStatus::Instance(this);
    if (status->isVisible()) {
        status->hide();
        return;
    }
    status->setGeometry(tessera::CardStatusRect(geometry(), status->size().expandedTo(status->minimumSizeHint())));
    status->show();
}

/// The status bar gets its height after the window has got its size; the clock follows. The card status window goes
/// with the label: a kiosk's windows have no frame to close them by.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui->statusbar && event->type() == QEvent::Resize)
        m_pTimeLabel->setGeometry(tessera::TimeRect(ui->statusbar->size()));
    if (watched == m_pCardStatusLabel && event->type() == QEvent::MouseButtonPress) {
        ToggleCardStatus();
        return true;
    }
    if (watched == m_pCardStatusLabel && event->type() == QEvent::Hide && !event->spontaneous()) {
        if (CardMirrorStatus* status = CardMirrorStatus::Existing())
            status->hide();
    }
    // The indicator tells nobody that it was pressed; custom windows rely on that.
    if (watched == m_pSafeAlarm && event->type() == QEvent::MouseButtonRelease)
        ShowAlarmHistory();
    return QMainWindow::eventFilter(watched, event);
}

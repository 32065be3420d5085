// SPDX-License-Identifier: MIT
#include "shell/cardmirrorstatus.h"

#include "engine/imarkcardbase.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "shell/cardstatuswords.h"
#include "shell/lamppixmap.h"
#include "ui_cardmirrorstatus.h"

#include <QEvent>
#include <algorithm>
#include <iterator>

CardMirrorStatus* CardMirrorStatus::m_pInstance = nullptr;

namespace {

constexpr int kUpdateMs = 100;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// Where a lamp is shown, and its name.
struct LampPlace {
    tessera::CardLamp lamp;
    QLabel* Ui_CardMirrorStatus::*image;
    QLabel* Ui_CardMirrorStatus::*name;
    char const* prefix;
    char const* key;
};

using Form = Ui_CardMirrorStatus;
using tessera::CardLamp;

constexpr LampPlace kPlaces[] = {
    {CardLamp::Running, &Form::labelRuningImg, &Form::labelRuning, "", "运行中"},
    {CardLamp::Paused, &Form::labelPauseImg, &Form::labelPause, "", "暂停中"},
    {CardLamp::IOTimeOut, &Form::labelIOTimeOutImg, &Form::labelIOTimeOut, "IO", "超时"},
    {CardLamp::WaitInput, &Form::labelWaitInputImg, &Form::labelWaitInput, "", "等待输入"},
    {CardLamp::WaitExMotion, &Form::labelWaitExMotionImg, &Form::labelWaitExMotion, "", "等待扩展运动模块"},
    {CardLamp::WaitEncoder, &Form::labelWaitEncodeImg, &Form::labelWaitEncode, "", "等待编码器"},
    {CardLamp::WaitMirror, &Form::labelWaitMirrorImg, &Form::labelWaitMirror, "", "等待振镜闭环到达"},
    {CardLamp::DataCutOff, &Form::labelDataCutOffImg, &Form::labelDataCutOff, "", "数据断流"},
    {CardLamp::Stopped, &Form::labelStopRunImg, &Form::labelStopRun, "", "运动被停止"},
    {CardLamp::Succeeded, &Form::labelRunSuccessImg, &Form::labelRunSuccess, "", "运行成功"},
};
static_assert(std::size(kPlaces) == tessera::kCardLampRules.size());

LampPlace const& placeOf(CardLamp lamp) {
    return *std::find_if(std::begin(kPlaces), std::end(kPlaces),
                         [lamp](LampPlace const& place) { return place.lamp == lamp; });
}

/// A text that is read while it stays the same keeps its place in the scroll area.
void showText(QPlainTextEdit* edit, QString content) {
    content.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (edit->toPlainText() != content)
        edit->setPlainText(content);
}

} // namespace

CardMirrorStatus* CardMirrorStatus::Instance(QWidget* parent) {
    if (!m_pInstance)
        m_pInstance = new CardMirrorStatus(parent);
    return m_pInstance;
}

CardMirrorStatus::CardMirrorStatus(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::WindowStaysOnTopHint)
    , ui(new Ui_CardMirrorStatus)
    , m_OffPixmap(tessera::LampPixmap("gray"))
    , m_OnPixmap(tessera::LampPixmap("green")) {
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
    for (LampPlace const& place : kPlaces)
        (*ui.*place.image)->setPixmap(m_OffPixmap);
    SetUIText();
    ui->spinBox->setValue(MarkCardInstance::Instance()->GetAlarmTime());
    connect(&m_Timer, &QTimer::timeout, this, &CardMirrorStatus::update);
    ensurePolished();
    resize(size().expandedTo(minimumSizeHint()));
}

CardMirrorStatus::~CardMirrorStatus() {
    m_pInstance = nullptr;
}

void CardMirrorStatus::SetUIText() {
    setWindowTitle(text("卡&振镜状态"));
    ui->groupBoxRunState->setTitle(text("运行状态"));
    ui->groupBoxRunResult->setTitle(text("运行结果"));
    for (LampPlace const& place : kPlaces)
        (*ui.*place.name)->setText(QLatin1String(place.prefix) + text(place.key));
    ui->labelWaitInfo->setText(text("WaitInfo"));
    ui->labelAlarmTime->setText(text("报警时间设置"));
    ui->pushButtonSave->setText(text("保存"));
    ui->pushButtonClearAlarm->setText(text("清除报警"));
}

void CardMirrorStatus::update() {
    IMarkCardBase const* card = MarkCardInstance::Instance();
    if (!isVisible() || !card->IsCardOpend())
        return;
    const std::uint32_t word = card->GetMarkInfo();
    for (tessera::CardLampRule const& rule : tessera::kCardLampRules)
        (*ui.*placeOf(rule.lamp).image)->setPixmap(tessera::CardLampIsOn(rule, word) ? m_OnPixmap : m_OffPixmap);
    showText(ui->plainTextEditMirrorStatus, tessera::ScanStateText(card->GetScanState()));
    showText(ui->plainTextEditWaitInfo, card->GetWaitInfo());
}

void CardMirrorStatus::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    update();
    m_Timer.start(kUpdateMs);
}

void CardMirrorStatus::hideEvent(QHideEvent* event) {
    m_Timer.stop();
    QWidget::hideEvent(event);
}

void CardMirrorStatus::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange)
        SetUIText();
    QWidget::changeEvent(event);
}

void CardMirrorStatus::on_pushButtonSave_clicked() {
    MarkCardInstance::Instance()->SetAlarmTime(ui->spinBox->value());
}

void CardMirrorStatus::on_pushButtonClearAlarm_clicked() {
    MarkCardInstance::Instance()->ClearAlarm();
}

// SPDX-License-Identifier: MIT
#include "run/redlooppreview.h"

#include "engine/languagemanager.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"
#include "ui_redlooppreview.h"

#include <QCloseEvent>
#include <QShowEvent>

namespace {

/// Pause between two rounds of the beam, ms: the contour seems to stand.
constexpr int kLoopDelayMs = 10;

QIcon arrow(char const* name) {
    return QIcon(QStringLiteral(":/Icon/Res/%1arrow.png").arg(QLatin1String(name)));
}

} // namespace

RedLoopPreview::RedLoopPreview(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::RedLoopPreview>()) {
    ui->setupUi(this);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    hide();
    ui->pushButtonUp->setIcon(arrow("up"));
    ui->pushButtonDown->setIcon(arrow("down"));
    ui->pushButtonLeft->setIcon(arrow("left"));
    ui->pushButtonRight->setIcon(arrow("right"));
    setWindowTitle(LanguageManager::GetLanText("红光循环预览"));
    ui->pushButtonClose->setText(LanguageManager::GetLanText("关闭"));
    connect(ui->pushButtonClose, &QPushButton::clicked, this, &QWidget::close);
}

RedLoopPreview::~RedLoopPreview() = default;

void RedLoopPreview::reject() {
    close();
}

/// What the window system shows again, after the dialog was minimised, starts nothing.
void RedLoopPreview::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous())
        Form_Marking::Instance()->StartMarkPreview(true, true, kLoopDelayMs, MarkTypeRedPreview);
}

void RedLoopPreview::closeEvent(QCloseEvent* event) {
    Form_Marking::Instance()->StopMark();
    event->accept();
}

void RedLoopPreview::on_pushButtonUp_clicked() {
    Nudge(0, -1);
}

void RedLoopPreview::on_pushButtonDown_clicked() {
    Nudge(0, 1);
}

void RedLoopPreview::on_pushButtonLeft_clicked() {
    Nudge(1, 0);
}

void RedLoopPreview::on_pushButtonRight_clicked() {
    Nudge(-1, 0);
}

/// Kept: left and right follow the setting of the Y axis too, and without it all four arrows point against the
/// document's axes, as the operator sees the workpiece from the other side of the field.
void RedLoopPreview::Nudge(int x, int y) {
    m_pView = MainWindow::Instance()->GetCurDoc();
    if (!m_pView)
        return;
    const double distance = SystemParam::Instance()->InvertY() ? -m_pView->GetKeyMoveDist() : m_pView->GetKeyMoveDist();
    m_pView->MoveSelectObjRelative(x * distance, y * distance);
}

// SPDX-License-Identifier: MIT
#include "run/formteaching.h"

#include "engine/imarkcardbase.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "shell/mainwindow.h"
#include "ui_formteaching.h"

#include <QCloseEvent>
#include <QFile>
#include <cmath>

namespace {

constexpr double kMoveSpeed = 1000.0; // mm/s

QIcon arrow(char const* name) {
    return QIcon(QStringLiteral(":/Icon/Res/%1arrow.png").arg(QLatin1String(name)));
}

/// Steps of 0.1 there and back leave a trace of the last bit, which is no "-0.000".
void showValue(QLineEdit& field, double mm) {
    field.setText(QString::number(std::abs(mm) < 0.0005 ? 0.0 : mm, 'f', 3));
}

void moveMirrors(double x, double y) {
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        card->MoveMirrorPos(x, y, kMoveSpeed, 0);
}

} // namespace

FormTeaching::FormTeaching(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::FormTeaching>()) {
    ui->setupUi(this);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    hide();
    QFile style(QStringLiteral(":/myQSS.qss"));
    if (style.open(QIODevice::ReadOnly))
        setStyleSheet(QString::fromUtf8(style.readAll()));
    ui->pushButtonUp->setIcon(arrow("up"));
    ui->pushButtonDown->setIcon(arrow("down"));
    ui->pushButtonLeft->setIcon(arrow("left"));
    ui->pushButtonRight->setIcon(arrow("right"));
    setWindowTitle(LanguageManager::GetLanText("示教"));
    ui->labelCurrentPos->setText(LanguageManager::GetLanText("当前位置"));
    ui->pushButtonRecordPoint->setText(LanguageManager::GetLanText("生成单点"));
    ui->pushButtonMoveCenter->setText(LanguageManager::GetLanText("回中心"));
    ui->pushButtonClose->setText(LanguageManager::GetLanText("关闭"));
    ConnectSteps();
    connect(ui->pushButtonClose, &QPushButton::clicked, this, &QWidget::close);
    connect(MainWindow::Instance(), &MainWindow::SetCurMirrorPos, this, &FormTeaching::onChangePos);
}

FormTeaching::~FormTeaching() = default;

void FormTeaching::ConnectSteps() {
    const struct {
        QRadioButton* button;
        double mm;
    } steps[] = {{ui->radioButtonX1, 0.01},
                 {ui->radioButtonX2, 0.1},
                 {ui->radioButtonX3, 1.0},
                 {ui->radioButtonX4, 10.0},
                 {ui->radioButtonX5, 100.0}};
    for (auto const& step : steps) {
        connect(step.button, &QRadioButton::toggled, this, [this, mm = step.mm](bool on) {
            if (on)
                m_Step = mm;
        });
    }
}

void FormTeaching::reject() {
    close();
}

void FormTeaching::closeEvent(QCloseEvent* event) {
    MainWindow::Instance()->onTeachingRecover();
    emit FormClosed();
    event->accept();
}

void FormTeaching::onChangePos(QPointF point) {
    showValue(*ui->lineEditMirrX, point.x());
    showValue(*ui->lineEditMirrY, point.y());
    moveMirrors(point.x(), point.y());
    m_PosX = point.x();
    m_PosY = point.y();
}

void FormTeaching::on_pushButtonUp_clicked() {
    Step(0, 1);
}

void FormTeaching::on_pushButtonDown_clicked() {
    Step(0, -1);
}

void FormTeaching::on_pushButtonLeft_clicked() {
    Step(-1, 0);
}

void FormTeaching::on_pushButtonRight_clicked() {
    Step(1, 0);
}

/// Only the value of the axis that moved is shown anew: after a way to the centre the other one still reads 0.000.
void FormTeaching::Step(int x, int y) {
    const double toX = m_PosX + x * m_Step;
    const double toY = m_PosY + y * m_Step;
    moveMirrors(toX, toY);
    m_PosX = toX;
    m_PosY = toY;
    if (x != 0)
        showValue(*ui->lineEditMirrX, m_PosX);
    else
        showValue(*ui->lineEditMirrY, m_PosY);
}

/// Kept: the stored place stays, so that the next arrow goes on from where the operator was before.
void FormTeaching::on_pushButtonMoveCenter_clicked() {
    moveMirrors(0.0, 0.0);
    showValue(*ui->lineEditMirrX, 0.0);
    showValue(*ui->lineEditMirrY, 0.0);
}

void FormTeaching::on_pushButtonRecordPoint_clicked() {
    if (QRulerView* view = MainWindow::Instance()->GetActiveView())
        view->AddMarkPoint(QPointF(m_PosX, m_PosY));
}

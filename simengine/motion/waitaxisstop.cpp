// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/waitaxisstop.h"

#include "engine/languagemanager.h"
#include "engine/movecardmanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/motion/axissequence.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int kRefreshMs = 50;

} // namespace

struct WaitAxisStop::Private {
    QVector<AxisMoveStruct> list;
    Class_CardPara para;
    QVector<QLabel*> positions; ///< one a request
    QLabel* message = nullptr;
    QPushButton* stop = nullptr;
    bool ended = false;
    /// Last, so that it is the first to go: its thread refers to the dialog.
    std::unique_ptr<sim::AxisSequence> sequence;

    QString axisName(int axis) const;
    void showPositions() const;
};

QString WaitAxisStop::Private::axisName(int axis) const {
    if (axis < 0 || axis >= kAxisSlots)
        return QString::number(axis + 1);
    return para.Axis[static_cast<std::size_t>(axis)].Name;
}

void WaitAxisStop::Private::showPositions() const {
    for (int i = 0; i < list.size(); ++i) {
        double position = 0.0;
        if (MoveCardManager::Instance()->AxisGetAltPos(list[i].AxisNo, position))
            positions[i]->setText(QString::number(position, 'f', 3));
    }
}

WaitAxisStop::WaitAxisStop(bool home, QVector<AxisMoveStruct> const& list, QWidget* parent, Class_CardPara* para)
    : QDialog(parent)
    , d(std::make_unique<Private>()) {
    setObjectName(QStringLiteral("WaitAxisStop"));
    sim::prepareDialog(this, LanguageManager::GetLanText(home ? "回原点" : "移动"));
    d->list = list;
    for (AxisMoveStruct& request : d->list)
        request.Home = home;
    d->para = para ? *para : *Class_CardPara::Instance();
    d->message = new QLabel(LanguageManager::GetLanText(home ? "正在回原点,请稍候" : "正在移动,请稍候"), this);
    d->message->setObjectName(QStringLiteral("labelMessage"));
    d->stop = sim::makeButton("停止", "pushButtonStop", this);
    d->stop->setStyleSheet(QStringLiteral("background-color: red; color: white"));
    auto* layout = new QVBoxLayout(this);
    auto* axes = new QFormLayout;
    layout->addWidget(d->message);
    layout->addLayout(axes);
    layout->addWidget(d->stop);
    for (AxisMoveStruct const& request : list) {
        auto* position = new QLabel(this);
        position->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        axes->addRow(d->axisName(request.AxisNo), position);
        d->positions.append(position);
    }
    d->showPositions();
    auto* timer = new QTimer(this);
    timer->start(kRefreshMs);
    connect(timer, &QTimer::timeout, this, [this] { d->showPositions(); });
    connect(d->stop, &QPushButton::clicked, this, &WaitAxisStop::reject);
}

WaitAxisStop::~WaitAxisStop() {
    d->sequence.reset();
}

void WaitAxisStop::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (d->sequence || d->ended)
        return;
    if (!MoveCardManager::Instance()->IsCardOpened()) {
        d->ended = true;
        QMetaObject::invokeMethod(
            this, [this] { done(QDialog::Rejected); }, Qt::QueuedConnection);
        return;
    }
    d->sequence = std::make_unique<sim::AxisSequence>(d->list, d->para, [this](bool good) {
        QMetaObject::invokeMethod(
            this,
            [this, good] {
                d->ended = true;
                d->sequence.reset();
                done(good ? QDialog::Accepted : QDialog::Rejected);
            },
            Qt::QueuedConnection);
    });
}

void WaitAxisStop::reject() {
    if (!d->sequence) {
        QDialog::reject();
        return;
    }
    d->stop->setEnabled(false);
    d->message->setText(LanguageManager::GetLanText("正在停止"));
    d->sequence->cancel();
}

void WaitAxisStop::closeEvent(QCloseEvent* event) {
    if (!d->sequence) {
        QDialog::closeEvent(event);
        return;
    }
    event->ignore();
    reject();
}

bool WaitAxisStop::SearchHome(QVector<AxisMoveStruct>& list, Class_CardPara* para, QWidget* parent) {
    if (!MoveCardManager::Instance()->IsCardOpened())
        return false;
    if (list.isEmpty())
        return true;
    WaitAxisStop dialog(true, list, parent, para);
    return dialog.exec() == QDialog::Accepted;
}

// SPDX-License-Identifier: MIT
#include "maintenance/workprogress.h"

#include "engine/languagemanager.h"
#include "ui_workprogress.h"

#include <QTimer>
#include <thread>

namespace {

constexpr int kPeriod = 100; // ms
constexpr int kSteps = 1000; // of the bar

} // namespace

WorkProgress::WorkProgress(QWidget* parent, QString const& text)
    : QDialog(parent)
    , ui(std::make_unique<Ui_WorkProgress>()) {
    ui->setupUi(this);
    setModal(true);
    setWindowTitle(text);
    ui->labelText->setText(text);
    ui->pushButtonCancel->setText(LanguageManager::GetLanText("取消"));
    connect(ui->pushButtonCancel, &QPushButton::clicked, this, &WorkProgress::reject);
    connect(this, &WorkProgress::WorkEnded, this, &WorkProgress::accept, Qt::QueuedConnection);
    ShowState();
}

WorkProgress::~WorkProgress() = default;

void WorkProgress::Run(std::function<void(tessera::WorkControl&)> const& work) {
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, &WorkProgress::ShowState);
    timer.start(kPeriod);
    std::thread worker([this, &work] {
        work(m_Control);
        emit WorkEnded();
    });
    exec();
    // The program may be ending, which ends the loop above without the work being done.
    m_Control.cancel();
    worker.join();
}

void WorkProgress::reject() {
    if (!m_Control.isFinal())
        m_Control.cancel();
    ShowState();
}

void WorkProgress::ShowState() {
    const qint64 total = m_Control.total();
    ui->progressBar->setMaximum(total > 0 ? kSteps : 0); // without an end the bar just moves
    if (total > 0)
        ui->progressBar->setValue(static_cast<int>(qMin(m_Control.done(), total) * 1.0 / total * kSteps));
    ui->pushButtonCancel->setEnabled(!m_Control.isFinal() && !m_Control.isCancelled());
}

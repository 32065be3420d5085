// SPDX-License-Identifier: MIT
#include "markjob.h"

#include "engine/imarkcardbase.h"
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "engine/rundatagather.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"

#include <QAction>
#include <QCheckBox>
#include <QEvent>
#include <QPushButton>

namespace tessera {

namespace {

/// Value of MainWindow::MarkWindowIsVisible() for the single-document run dialog.
constexpr int kSingleDialog = 1;

/// Why the active document cannot be run now; empty when it can.
QString obstacle(MainWindow* window) {
    IMarkCardBase const* card = MarkCardInstance::Instance();
    if (!card || !card->IsCardOpend())
        return QStringLiteral("The card is not open.");
    QRulerView* document = window->GetActiveView();
    if (!document)
        return QStringLiteral("There is no document to mark: give one by --open or --import.");
    int objects = 0;
    int vertices = 0;
    document->GetDocStatistics(objects, vertices);
    if (vertices == 0)
        return QStringLiteral("The document \"%1\" has nothing to mark.").arg(document->GetFileName());
    QStringList alarms;
    for (QString const& alarm : window->GetAlarmInfos())
        alarms.append(alarm);
    if (!alarms.isEmpty())
        return QStringLiteral("An alarm is active: %1.").arg(alarms.join(QStringLiteral(", ")));
    return QString();
}

} // namespace

MarkJob::MarkJob(int passes, QObject* parent)
    : QObject(parent)
    , m_wanted(passes) {}

void MarkJob::start() {
    QString const error = openDialog();
    if (!error.isEmpty()) {
        finish(error);
        return;
    }
    connect(m_dialog.data(), &Form_Marking::SendRunData, this, [this] { m_passCounted = true; });
    connect(m_dialog.data(), &QObject::destroyed, this,
            [this] { finish(QStringLiteral("The run dialog was closed before all passes had ended.")); });
    m_cancelButton->installEventFilter(this);
    beginPass();
}

QString MarkJob::openDialog() {
    MainWindow* window = MainWindow::Instance();
    QString const error = obstacle(window);
    if (!error.isEmpty())
        return error;
    if (auto* action = window->findChild<QAction*>(QStringLiteral("actionMark")))
        action->trigger();
    if (window->MarkWindowIsVisible() != kSingleDialog)
        return QStringLiteral("The run dialog cannot be opened while the multi-document dialog is.");
    m_dialog = Form_Marking::Instance();
    m_startButton = m_dialog->findChild<QPushButton*>(QStringLiteral("pushButtonStart"));
    m_cancelButton = m_dialog->findChild<QPushButton*>(QStringLiteral("pushButtonCancel"));
    auto* selectedOnly = m_dialog->findChild<QCheckBox*>(QStringLiteral("checkBoxSelectMarking"));
    if (!m_startButton || !m_cancelButton || !selectedOnly)
        return QStringLiteral("The run dialog has not the buttons that it should have.");
    if (m_dialog->IsRunning())
        return QStringLiteral("A run is under way already.");
    m_dialog->SetRunSelection(0, false);
    selectedOnly->setChecked(false);
    return QString();
}

void MarkJob::beginPass() {
    QString const error = pressStart();
    if (!error.isEmpty())
        finish(error);
}

QString MarkJob::pressStart() {
    if (!m_dialog || !m_startButton)
        return QStringLiteral("The run dialog is gone.");
    QString const error = obstacle(MainWindow::Instance());
    if (!error.isEmpty())
        return error;
    m_passCounted = false;
    m_passTime.start();
    if (!m_startButton->isEnabled())
        return QStringLiteral("The Start button of the run dialog is disabled.");
    m_startButton->click();
    return QString();
}

bool MarkJob::eventFilter(QObject* watched, QEvent* event) {
    // The dialog gives its exit button free when a run has ended, and does some more after it: the next press of Start
    // waits until it is done.
    if (watched == m_cancelButton && event->type() == QEvent::EnabledChange && m_cancelButton->isEnabled() &&
        m_passCounted)
        QMetaObject::invokeMethod(this, &MarkJob::finishPass, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void MarkJob::finishPass() {
    if (!m_passCounted)
        return;
    m_passCounted = false;
    qint64 const time = m_passTime.elapsed();
    // The record of runs tells only of those that came to the card, and of a stop that was given to the card alone.
    if (!m_dialog->LastPassMarked() || !RunDataGather::Instance()->GetRunResult()) {
        finish(QStringLiteral("Pass %1 of %2 was stopped or had nothing to mark.").arg(m_done + 1).arg(m_wanted));
        return;
    }
    ++m_done;
    emit passEnded(m_done, time);
    if (m_done < m_wanted)
        beginPass();
    else
        finish(QString());
}

void MarkJob::finish(QString const& error) {
    if (m_cancelButton)
        m_cancelButton->removeEventFilter(this);
    if (m_dialog)
        m_dialog->disconnect(this);
    m_passTime.invalidate();
    QMetaObject::invokeMethod(
        this, [this, error] { emit ended(error); }, Qt::QueuedConnection);
}

} // namespace tessera

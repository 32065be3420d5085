// SPDX-License-Identifier: MIT
#pragma once

#include "support/workcontrol.h"

#include <QDialog>
#include <functional>
#include <memory>

class Ui_WorkProgress;

/// A modal dialog that shows how far a piece of work on another thread is, and lets the operator cancel it. For one
/// piece of work each. Main thread.
class WorkProgress : public QDialog {
    Q_OBJECT
public:
    WorkProgress(QWidget* parent, QString const& text);
    ~WorkProgress() override;

    /// Runs `work` on a thread of its own and returns when it has ended, which cancelling only makes sooner.
    void Run(std::function<void(tessera::WorkControl&)> const& work);

    /// Asks the work to end; the dialog stays until it has.
    void reject() override;

signals:
    /// Emitted by the thread of the work at its end.
    void WorkEnded();

private:
    void ShowState();

    tessera::WorkControl m_Control;
    std::unique_ptr<Ui_WorkProgress> ui;
};

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>
#include <QTimer>
#include <QVector>

class QLabel;
class QWidget;

namespace sim {

class Session;

/// Shows in a dialog for passwords how long they are still refused, and keeps its widgets disabled until then.
class LockCountdown : public QObject {
    Q_OBJECT
public:
    /// `inputs` are disabled in a pause; the first one has the focus behind it. The dialog, as parent, owns the object.
    LockCountdown(Session& session, QLabel* label, QVector<QWidget*> const& inputs, QWidget* dialog);

    /// A password was refused, or the dialog opens: is there a pause?
    void look();

private:
    Session& m_session;
    QLabel* m_label;
    QVector<QWidget*> m_inputs;
    QTimer m_timer;
    bool m_locked = false;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace sim {

/// Direction keys for a view that is locked: while a job runs the shell disables the editing part of its window, and a
/// disabled widget hears no keys. Pressed anywhere in the view's window they then go the way to the running preview.
class WindowKeys : public QObject {
public:
    explicit WindowKeys(QWidget& view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_view;
};

} // namespace sim

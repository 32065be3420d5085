// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>
#include <functional>

class QKeyEvent;
class QWidget;

namespace sim {

/// Keys that mean the view wherever in its window they are pressed. A key for the visible view is offered to `take`, so
/// that a taught place is confirmed whatever has the focus. While a job runs the shell disables the editing part of its
/// window, and a disabled widget hears no keys: direction keys then go the way to the running preview.
class WindowKeys : public QObject {
public:
    /// True from `take`: the key is used up.
    using Take = std::function<bool(const QKeyEvent&)>;

    WindowKeys(QWidget& view, Take take);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_view;
    Take m_take;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktypes.h"

#include <QString>
#include <QVector>
#include <QWidget>
#include <mutex>

class QPlainTextEdit;
class ShowDebugIno;

namespace sim {

/// The registered sink of operator-visible lines, null without one. Any thread.
ShowDebugIno* debugSink();

/// Lines that the debug window keeps; older ones drop out.
constexpr int kDebugWindowLines = 2000;

/// The window of debug lines. addLine from any thread, the rest on the main thread.
class DebugWindow : public QWidget {
    Q_OBJECT
public:
    DebugWindow();

    /// Hands a line to the main thread. Lines that come faster than the main thread takes them are kept up to
    /// kDebugWindowLines, then the oldest drop out.
    void addLine(QString const& text, DebugInfoType type);
    /// Shows the window in front of others.
    void bringUp();

private:
    struct Entry {
        QString text;
        DebugInfoType type;
    };

    void takeLines();

    QPlainTextEdit* m_text;
    std::mutex m_lock;
    QVector<Entry> m_pending;
    bool m_flushQueued = false;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/document.h"

#include <QObject>
#include <QTimer>

namespace sim {

class ViewSession;

/// Lets an open document show the present values of its variables: after an edit or a step back, after a pass has moved
/// the counters on, after the definitions were changed, and each minute where a date or a shift is shown. That is no
/// edit. Main thread.
class VariableRefresh : public QObject {
    Q_OBJECT
public:
    explicit VariableRefresh(ViewSession& session);

private:
    void refresh();

    ViewSession& m_session;
    std::shared_ptr<const ObjectList> m_seen; ///< objects that show what they should, or have no variables
    QTimer m_clock;
};

} // namespace sim

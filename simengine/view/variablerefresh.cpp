// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/variablerefresh.h"

#include "simengine/document/variableresolver.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/viewsession.h"

namespace sim {

namespace {

constexpr int kClockInterval = 60'000; ///< ms

} // namespace

VariableRefresh::VariableRefresh(ViewSession& session)
    : m_session(session) {
    m_clock.setInterval(kClockInterval);
    const auto anew = [this] {
        m_seen.reset();
        refresh();
    };
    connect(&m_clock, &QTimer::timeout, this, anew);
    connect(&VariableStore::instance(), &VariableStore::changed, this, anew, Qt::QueuedConnection);
    connect(&session, &ViewSession::changed, this, &VariableRefresh::refresh);
}

void VariableRefresh::refresh() {
    const StatePtr state = m_session.state();
    if (state->objects == m_seen)
        return;
    m_seen = state->objects;
    if (!holdsVariables(*state->objects)) {
        m_clock.stop();
        return;
    }
    if (!followsClock(*state->objects))
        m_clock.stop();
    else if (!m_clock.isActive())
        m_clock.start();
    VariableValues values(VariableStore::instance().set(), QDateTime::currentDateTime());
    const ResolvedObjects resolved = resolveVariables(*state, Resolve::All, values);
    if (resolved.objects == state->objects)
        return;
    m_seen = resolved.objects;
    m_session.document().showValues(state->objects, resolved.objects);
}

} // namespace sim

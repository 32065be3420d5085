// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/variablepass.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/systemparam.h"
#include "simengine/card/cardlink.h"
#include "simengine/document/variablehistory.h"
#include "simengine/document/variablestore.h"

namespace sim {

namespace {

/// Codes are kept this long at least, so that a longer time can be set afterwards.
constexpr int kLeastDaysKept = 30;

QStringList names(const UsedVariables& used) {
    QStringList names;
    for (const CounterStep<SerialNumber>& step : used.serials)
        names << step.before.name;
    for (const CounterStep<CsvSource>& step : used.sources)
        names << step.before.name;
    return names;
}

VariableValues valuesNow(const StatePtr& state, VariableProblem& problem) {
    VariableSet set;
    if (holdsVariables(*state->objects))
        set = VariableStore::instance().set(&problem);
    return VariableValues(set, QDateTime::currentDateTime());
}

} // namespace

VariablePass::VariablePass(StatePtr state, bool selectedOnly, bool laser)
    : m_state(std::move(state))
    , m_laser(laser)
    , m_values(valuesNow(m_state, m_problem)) {
    if (!m_problem.ok())
        return;
    ResolvedObjects resolved = resolveVariables(*m_state, selectedOnly ? Resolve::Selected : Resolve::Marked, m_values);
    m_problem = resolved.problem;
    m_codes = resolved.uniqueCodes;
    if (resolved.objects != m_state->objects) {
        auto shown = std::make_shared<DocumentState>(*m_state);
        shown->objects = std::move(resolved.objects);
        m_state = std::move(shown);
    }
    if (m_laser && m_problem.ok())
        refuseMarkedCodes();
}

VariablePass::~VariablePass() {
    if (m_begun)
        end(false);
}

void VariablePass::refuseMarkedCodes() {
    const int days = SystemParam::Instance()->CheckCodeTextDays();
    if (days <= 0 || m_codes.isEmpty())
        return;
    const markedcodes::Search search = markedcodes::findSince(m_codes, m_values.now().addDays(-days));
    VariableProblem problem;
    if (!search.fault.isEmpty())
        problem = {VariableFault::NotLookedUp, search.fault};
    else if (search.earlier)
        problem = {VariableFault::MarkedBefore,
                   QStringLiteral("%1 (%2)").arg(search.earlier->code,
                                                 search.earlier->time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))};
    else
        return;
    if (SystemParam::Instance()->ForceCheckCodeText())
        m_problem = problem;
    else
        MarkLog::Instance()->ShowNote_Error(variableMessage(problem));
}

bool VariablePass::begin() {
    if (!m_laser || !counts())
        return true;
    VariableStore& store = VariableStore::instance();
    if (store.wasInterrupted()) {
        const QString text = LanguageManager::GetLanText("上次打标中断电,请检查最后的工件") + QStringLiteral(": ") +
                             names(m_values.used()).join(QStringLiteral(", "));
        MarkLog::Instance()->ShowNote_Error(text);
        showCardMessage(text, 0);
    }
    m_begun = store.beginPass(&m_problem);
    return m_begun;
}

// The codes first: if the machine is switched off in between, the check for marked codes finds the one that the counter
// would repeat.
void VariablePass::end(bool toItsEnd) {
    m_begun = false;
    if (!m_laser || !counts())
        return;
    const int days = std::max(kLeastDaysKept, SystemParam::Instance()->CheckCodeTextDays());
    const QDateTime& now = m_values.now();
    bool kept = !toItsEnd || markedcodes::add(m_codes, now, now.addDays(-days));
    kept = VariableStore::instance().endPass(m_values.used(), toItsEnd) && kept;
    if (kept)
        return;
    const QString text =
        variableMessage({VariableFault::NotWritten, names(m_values.used()).join(QStringLiteral(", "))});
    MarkLog::Instance()->ShowNote_Error(text);
    showCardMessage(text, 1);
}

} // namespace sim

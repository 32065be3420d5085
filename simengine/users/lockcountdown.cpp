// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/lockcountdown.h"

#include "engine/languagemanager.h"
#include "simengine/users/session.h"

#include <QLabel>

namespace sim {

namespace {

constexpr int kPeriod = 100; ///< ms; often enough that no second is left out

} // namespace

LockCountdown::LockCountdown(Session& session, QLabel* label, QVector<QWidget*> const& inputs, QWidget* dialog)
    : QObject(dialog)
    , m_session(session)
    , m_label(label)
    , m_inputs(inputs) {
    m_timer.setInterval(kPeriod);
    connect(&m_timer, &QTimer::timeout, this, &LockCountdown::look);
}

void LockCountdown::look() {
    int const left = m_session.lockedMs();
    bool const locked = left > 0;
    if (locked)
        m_label->setText(LanguageManager::GetLanText("尝试次数过多,请%1秒后再试").arg((left + 999) / 1000));
    if (locked == m_locked)
        return;
    m_locked = locked;
    for (QWidget* input : m_inputs)
        input->setEnabled(!locked);
    if (locked) {
        m_timer.start();
        return;
    }
    m_timer.stop();
    m_label->clear();
    m_inputs.first()->setFocus();
}

} // namespace sim

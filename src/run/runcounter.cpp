// SPDX-License-Identifier: MIT
#include "run/runcounter.h"

#include "support/approot.h"
#include "support/durablesettings.h"

namespace tessera {

namespace {

QString counterFile() {
    return rootPath(QStringLiteral("/ini/Marking.ini"));
}

const QString kCounterKey = QStringLiteral("MarkCnt");

} // namespace

RunCounter::RunCounter()
    : m_nValue(readSetting(counterFile(), kCounterKey, 0).toInt()) {}

bool RunCounter::Set(int value) {
    m_nValue = value;
    m_Error = writeSettingDurably(counterFile(), kCounterKey, value).message();
    return m_Error.isEmpty();
}

} // namespace tessera

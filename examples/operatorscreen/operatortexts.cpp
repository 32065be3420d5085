// SPDX-License-Identifier: MIT
#include "operatortexts.h"

#include "engine/languagemanager.h"

QString Show(OperatorText const& text) {
    const bool english = LanguageManager::GetCurrentLan() == QLatin1String("en");
    return QString::fromUtf8(english ? text.english : text.chinese);
}

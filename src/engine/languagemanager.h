// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>

/// Texts in the operator's language. Any thread.
class ENGINE_API LanguageManager {
public:
    /// Translation of a Chinese key (UTF-8), the key itself when there is none.
    static QString GetLanText(char const* key);
    static QString GetLanText(QString const& key);
    /// "zh_CN" or "en".
    static QString GetCurrentLan();
    /// Chooses and persists the language; false for one that is not there. Windows made before keep their texts until
    /// they set them again. Main thread.
    static bool SetCurrentLan(QString const& language);
};

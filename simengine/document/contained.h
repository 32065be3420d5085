// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/languagemanager.h"

#include <QString>
#include <exception>
#include <new>

namespace sim {

/// Carries out work whose need for memory comes from a file or a drawing. What it throws ends here, as on a thread of
/// its own or in a handler of the event loop it would end the program: false, and the reason in `fault`, which is left
/// alone otherwise.
template<class Work>
bool contained(QString& fault, Work work) {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        fault = LanguageManager::GetLanText("内存不足");
    } catch (const std::exception& thrown) {
        fault = QString::fromLocal8Bit(thrown.what());
    }
    return false;
}

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The screen's own texts. A custom window cannot add to the program's translations, so it brings both languages.
struct OperatorText {
    char const* chinese;
    char const* english;
};

/// The text in the language that is set in the program.
QString Show(OperatorText const& text);

namespace operatortexts {

constexpr OperatorText kCount{"加工数量", "Pieces marked"};
constexpr OperatorText kTime{"本次用时", "Time of this run"};
constexpr OperatorText kDocument{"当前文档", "Document"};
constexpr OperatorText kNoDocument{"没有打开的文档", "No document open"};
constexpr OperatorText kStart{"开始", "Start"};
constexpr OperatorText kContinue{"继续", "Continue"};
constexpr OperatorText kPause{"暂停", "Pause"};
constexpr OperatorText kStop{"停止", "Stop"};
constexpr OperatorText kEditor{"编辑界面", "Editor"};
constexpr OperatorText kReady{"就绪", "Ready"};
constexpr OperatorText kRunning{"加工中", "Marking"};
constexpr OperatorText kPaused{"已暂停", "Paused"};
constexpr OperatorText kAlarm{"安全报警", "Safety alarm"};
constexpr OperatorText kSeconds{"秒", "s"};

} // namespace operatortexts

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/marktypes.h"

#include <QString>
#include <memory>

/// The log: one file a day below /日志文件, a line an entry with time and kind. Any thread; an entry is in the file
/// when the call returns.
class ENGINE_API MarkLog {
public:
    static MarkLog* Instance();
    void ShowNode(NoteType type, QString const& text);
    void ShowNote(QString const& text);
    void ShowNote_Error(QString const& text);

private:
    MarkLog();
    ~MarkLog();
    struct Private;
    std::unique_ptr<Private> d;
};

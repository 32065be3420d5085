// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/marktypes.h"

#include <QString>
#include <QVector>

/// Sink of operator-visible lines; the main window implements it and registers itself. Its operations come on the
/// thread of whoever has something to tell.
class ENGINE_API ShowDebugIno {
public:
    virtual ~ShowDebugIno();
    virtual void ClearTextSub() = 0;
    /// Appends a line.
    virtual void ShowTextsSub(QString text, DebugInfoType type) = 0;
    /// Replaces the list; as many types as texts.
    virtual void SetTextsSub(QVector<QString> texts, QVector<DebugInfoType> types) = 0;

    /// Registers the sink; null takes it back. Main thread.
    static void SetInstance(ShowDebugIno* sink);
    /// Forwards to SetTextsSub of the registered sink, on the calling thread; nothing without one. Any thread.
    static void ShowText(QVector<QString> const& texts, QVector<DebugInfoType> const& types);
};

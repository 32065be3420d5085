// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/showdebugino.h"

#include "simengine/log/debugwindow.h"

#include <atomic>

namespace {

std::atomic<ShowDebugIno*> g_sink{nullptr};

} // namespace

ShowDebugIno::~ShowDebugIno() {
    ShowDebugIno* self = this;
    g_sink.compare_exchange_strong(self, nullptr);
}

void ShowDebugIno::SetInstance(ShowDebugIno* sink) {
    g_sink = sink;
}

void ShowDebugIno::ShowText(QVector<QString> const& texts, QVector<DebugInfoType> const& types) {
    if (ShowDebugIno* sink = g_sink.load())
        sink->SetTextsSub(texts, types);
}

namespace sim {

ShowDebugIno* debugSink() {
    return g_sink.load();
}

} // namespace sim

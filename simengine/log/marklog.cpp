// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/marklog.h"

#include "simengine/log/logfile.h"

// The log keeps nothing in memory: every entry goes to the file of its day at once.
struct MarkLog::Private {};

MarkLog::MarkLog()
    : d(std::make_unique<Private>()) {}

MarkLog::~MarkLog() = default;

MarkLog* MarkLog::Instance() {
    static MarkLog instance;
    return &instance;
}

void MarkLog::ShowNode(NoteType type, QString const& text) {
    sim::writeLog(static_cast<sim::LogKind>(type), text);
}

void MarkLog::ShowNote(QString const& text) {
    sim::writeLog(sim::LogKind::Note, text);
}

void MarkLog::ShowNote_Error(QString const& text) {
    sim::writeLog(sim::LogKind::Error, text);
}

// SPDX-License-Identifier: MIT
#pragma once

#include "laser/laserport.h"

#include <QMap>
#include <QStringList>

namespace tests {

/// Lines, time and an operator of paper: time passes at once, and all that a sequence does is written down.
class RecordingPort : public tessera::LaserPort {
public:
    /// An input reads 1 until it has been asked this often; without an entry it reads 1 for ever.
    QMap<int, int> readsUntilLow;
    bool open = true;

    QStringList calls;   ///< outputs, waits and notices in their order, with every read
    QStringList screen;  ///< what the screen was told
    QStringList ordered; ///< the same and the calls together
    int elapsedMs = 0;

    bool IsOpen() override { return open; }
    void SetOutput(int line, int value) override { add(QStringLiteral("out %1 %2").arg(line).arg(value)); }
    int Input(int line) override {
        const int reads = ++m_reads[line];
        add(QStringLiteral("read %1").arg(line));
        return readsUntilLow.contains(line) && reads > readsUntilLow.value(line) ? 0 : 1;
    }
    void Wait(int ms) override {
        elapsedMs += ms;
        add(QStringLiteral("wait %1").arg(ms));
    }
    void Notice(char const* text) override { add(QStringLiteral("notice ") + QString::fromUtf8(text)); }
    void SequenceBegins(char const* title) override { show(QStringLiteral("begin ") + QString::fromUtf8(title)); }
    void WaitBegins(tessera::LaserWait const& wait) override {
        show(QStringLiteral("%1 %2 %3").arg(QString::fromUtf8(wait.what)).arg(wait.line).arg(wait.longestMs));
    }
    void SequenceEnds() override { show(QStringLiteral("end")); }

private:
    void add(QString const& text) {
        calls.append(text);
        ordered.append(text);
    }
    void show(QString const& text) {
        screen.append(text);
        ordered.append(text);
    }

    QMap<int, int> m_reads;
};

/// A poll that fails `failed` times and, if `answered`, then succeeds.
inline QStringList poll(int line, int ms, int failed, bool answered) {
    QStringList calls;
    for (int i = 0; i < failed; ++i)
        calls << QStringLiteral("read %1").arg(line) << QStringLiteral("wait %1").arg(ms);
    if (answered)
        calls << QStringLiteral("read %1").arg(line);
    return calls;
}

} // namespace tests

// SPDX-License-Identifier: MIT
#pragma once

namespace tessera {

/// What a sequence waits for.
struct LaserWait {
    char const* what; ///< key of the operator's language
    int line;         ///< input waited for, -1 when it is time alone
    int longestMs;
};

/// What a laser sequence is walked on: the card's lines, time and the operator. All calls on the main thread.
class LaserPort {
public:
    virtual ~LaserPort() = default;

    virtual bool IsOpen() = 0;
    virtual void SetOutput(int line, int value) = 0;
    /// 0 or another value.
    virtual int Input(int line) = 0;
    /// Returns when `ms` have passed.
    virtual void Wait(int ms) = 0;
    /// Shows a notice and returns when the operator has acknowledged it.
    virtual void Notice(char const* text) = 0;

    // What the screen shows meanwhile, of sequences that have a title.
    virtual void SequenceBegins(char const* title) = 0;
    virtual void WaitBegins(LaserWait const& wait) = 0;
    virtual void SequenceEnds() = 0;
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <cstdio>

namespace tessera {

/// Progress of a row of passes on a console: a bar that is drawn anew in place on a terminal, one line a pass
/// otherwise.
class ConsoleProgress {
public:
    ConsoleProgress(std::FILE* stream, bool terminal, int passes);
    /// Asks the stream itself whether it is a terminal.
    ConsoleProgress(std::FILE* stream, int passes);

    /// `done` passes have ended; `share` (0 to 1) of the next is through.
    void show(int done, double share);
    /// Pass `number`, from 1, has ended after `milliseconds`.
    void passEnded(int number, qint64 milliseconds);
    /// No more passes: leaves the line.
    void end();

    /// The bar as text, `width` characters between its brackets.
    static QString bar(double share, int width);

private:
    std::FILE* m_stream;
    bool m_terminal;
    int m_passes;
    bool m_lineOpen = false;
    QElapsedTimer m_sinceShown;
};

} // namespace tessera

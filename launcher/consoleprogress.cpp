// SPDX-License-Identifier: MIT
#include "consoleprogress.h"

#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace tessera {

namespace {

constexpr int kBarWidth = 30;
/// Least time between two drawings of the bar, ms.
constexpr qint64 kDrawPeriod = 50;

} // namespace

ConsoleProgress::ConsoleProgress(std::FILE* stream, bool terminal, int passes)
    : m_stream(stream)
    , m_terminal(terminal)
    , m_passes(passes) {}

ConsoleProgress::ConsoleProgress(std::FILE* stream, int passes)
    : ConsoleProgress(stream, ::isatty(::fileno(stream)) == 1, passes) {}

void ConsoleProgress::show(int done, double share) {
    if (!m_terminal || (m_sinceShown.isValid() && m_sinceShown.elapsed() < kDrawPeriod))
        return;
    m_sinceShown.start();
    double const whole = (done + std::clamp(share, 0.0, 1.0)) / m_passes;
    QString const line = QStringLiteral("\r%1 %2 % pass %3 of %4")
                             .arg(bar(whole, kBarWidth))
                             .arg(int(whole * 100), 3)
                             .arg(std::min(done + 1, m_passes))
                             .arg(m_passes);
    std::fputs(line.toLocal8Bit().constData(), m_stream);
    std::fflush(m_stream);
    m_lineOpen = true;
}

void ConsoleProgress::passEnded(int number, qint64 milliseconds) {
    if (m_terminal) {
        m_sinceShown.invalidate();
        show(number, 0.0);
        return;
    }
    QString const line = QStringLiteral("pass %1 of %2: %3 ms\n").arg(number).arg(m_passes).arg(milliseconds);
    std::fputs(line.toLocal8Bit().constData(), m_stream);
    std::fflush(m_stream);
}

void ConsoleProgress::end() {
    if (m_lineOpen)
        std::fputc('\n', m_stream);
    std::fflush(m_stream);
    m_lineOpen = false;
}

QString ConsoleProgress::bar(double share, int width) {
    int const filled = int(std::lround(std::clamp(share, 0.0, 1.0) * width));
    return QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('.')) +
           QLatin1Char(']');
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "runreport.h"

#include <QStringList>

namespace tessera {

namespace {

QString line(char const* name, QString const& value) {
    return QString::fromLatin1(name).leftJustified(16) + value + QLatin1Char('\n');
}

QString millimetres(double value) {
    return QString::number(value, 'f', 3) + QStringLiteral(" mm");
}

QString milliseconds(double value) {
    return QString::number(value, 'f', 3) + QStringLiteral(" ms");
}

} // namespace

QString runReport(RunFigures const& figures) {
    return line("document:", figures.document) + line("objects:", QString::number(figures.objects)) +
           line("vertices:", QString::number(figures.vertices)) +
           line("marked length:", millimetres(figures.markedLength)) +
           line("jumped length:", millimetres(figures.jumpedLength)) +
           line("estimated time:", milliseconds(figures.estimatedTime)) +
           line("actual time:", milliseconds(figures.actualTime)) +
           line("elapsed time:", QStringLiteral("%1 ms").arg(figures.elapsedTime)) +
           line("passes:", QStringLiteral("%1 of %2").arg(figures.passes).arg(figures.passesWanted)) +
           line("counter:", QString::number(figures.counter));
}

} // namespace tessera

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>
#include <optional>

namespace sim {

/// The letters of a format, the same in every language:
///
///     yyyy yy y    year; its last two digits; its last digit
///     MM M         month          dd d     day
///     DDD          day of the year, three digits
///     GGGG GG      year that the week belongs to by ISO 8601
///     WW W         week by ISO 8601
///     E            day of the week, 1 is Monday
///     HH H  mm m  ss s    hour 0 to 23, minute, second
///
/// Doubled letters have two digits. Text between apostrophes stands as it is, two apostrophes are one. Digits and signs
/// need none. Nothing for a format with other letters or an apostrophe that does not end.
std::optional<QString> formatDate(const QDateTime& time, const QString& format);

/// A shift of the plant.
struct Shift {
    QTime begin;
    QString code;

    bool operator==(const Shift& other) const { return begin == other.begin && code == other.code; }
};

/// The index of the shift that goes on at the time, and the day on which it began: a night shift began on the day
/// before. Each goes on until the next one begins. -1 without shifts.
int shiftAt(const QVector<Shift>& shifts, const QDateTime& time, QDate* began = nullptr);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variabledates.h"

namespace sim {

namespace {

/// A number of the date or time under its letters.
struct DateField {
    const char* letters;
    int (*value)(const QDateTime& time);
    int digits;
};

int weekYear(const QDateTime& time) {
    int year = 0;
    time.date().weekNumber(&year);
    return year;
}

int year(const QDateTime& t) {
    return t.date().year();
}
int month(const QDateTime& t) {
    return t.date().month();
}
int day(const QDateTime& t) {
    return t.date().day();
}
int week(const QDateTime& t) {
    return t.date().weekNumber();
}
int hour(const QDateTime& t) {
    return t.time().hour();
}
int minute(const QDateTime& t) {
    return t.time().minute();
}
int second(const QDateTime& t) {
    return t.time().second();
}

const DateField kFields[] = {
    {"yyyy", year, 4},
    {"yy", [](const QDateTime& t) { return year(t) % 100; }, 2},
    {"y", [](const QDateTime& t) { return year(t) % 10; }, 1},
    {"MM", month, 2},
    {"M", month, 1},
    {"dd", day, 2},
    {"d", day, 1},
    {"DDD", [](const QDateTime& t) { return t.date().dayOfYear(); }, 3},
    {"GGGG", weekYear, 4},
    {"GG", [](const QDateTime& t) { return weekYear(t) % 100; }, 2},
    {"WW", week, 2},
    {"W", week, 1},
    {"E", [](const QDateTime& t) { return t.date().dayOfWeek(); }, 1},
    {"HH", hour, 2},
    {"H", hour, 1},
    {"mm", minute, 2},
    {"m", minute, 1},
    {"ss", second, 2},
    {"s", second, 1},
};

bool isLetter(QChar c) {
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'));
}

/// Takes the quoted text that begins at `place`; false when it does not end.
bool takeQuoted(const QString& format, int& place, QString& result) {
    constexpr QLatin1Char quote('\'');
    if (place + 1 < format.size() && format.at(place + 1) == quote) {
        result += quote;
        place += 2;
        return true;
    }
    for (++place; place < format.size(); ++place) {
        if (format.at(place) != quote) {
            result += format.at(place);
        } else if (place + 1 < format.size() && format.at(place + 1) == quote) {
            result += quote;
            ++place;
        } else {
            ++place;
            return true;
        }
    }
    return false;
}

bool takeField(const QDateTime& time, const QString& format, int& place, QString& result) {
    int end = place;
    while (end < format.size() && format.at(end) == format.at(place))
        ++end;
    const QString letters = format.mid(place, end - place);
    for (const DateField& field : kFields) {
        if (letters == QLatin1String(field.letters)) {
            result += QString::number(field.value(time)).rightJustified(field.digits, QLatin1Char('0'));
            place = end;
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<QString> formatDate(const QDateTime& time, const QString& format) {
    QString result;
    for (int place = 0; place < format.size();) {
        const QChar c = format.at(place);
        bool good = true;
        if (c == QLatin1Char('\''))
            good = takeQuoted(format, place, result);
        else if (isLetter(c))
            good = takeField(time, format, place, result);
        else
            result += format.at(place++);
        if (!good)
            return std::nullopt;
    }
    return result;
}

int shiftAt(const QVector<Shift>& shifts, const QDateTime& time, QDate* began) {
    int current = -1;
    int last = -1; // the latest one of a day goes on through the night
    for (int i = 0; i < shifts.size(); ++i) {
        if (shifts[i].begin <= time.time() && (current < 0 || shifts[i].begin >= shifts[current].begin))
            current = i;
        if (last < 0 || shifts[i].begin >= shifts[last].begin)
            last = i;
    }
    if (began)
        *began = current < 0 ? time.date().addDays(-1) : time.date();
    return current < 0 ? last : current;
}

} // namespace sim

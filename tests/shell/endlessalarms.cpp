// SPDX-License-Identifier: MIT
// "endlessalarms FILE": raises alarms without end, each in a batch with the end of the one before, until it is killed.
// The number of an alarm is told on the standard output after its batch was reported as written. An alarm "stays" is
// there from the first batch on.
#include "shell/alarmhistorystore.h"

#include <QCoreApplication>
#include <cstdio>

namespace {

void add(tessera::AlarmBatch& batch, qint64 number, tessera::AlarmEnd end) {
    tessera::AlarmEntry entry;
    entry.number = number;
    entry.code = number == 1 ? QStringLiteral("stays") : QStringLiteral("door1");
    entry.text = QString(200, QLatin1Char('x'));
    entry.firstOut = number == 1;
    entry.raisedMs = number;
    entry.clearedMs = end == tessera::AlarmEnd::Active ? 0 : number + 1;
    entry.end = end;
    batch.entries.insert(number, entry);
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    tessera::AlarmHistoryStore store(QString::fromLocal8Bit(argv[1]), 7'000'000, 300);
    for (qint64 number = 1;; ++number) {
        tessera::AlarmBatch batch;
        if (number > 2)
            add(batch, number - 1, tessera::AlarmEnd::Cleared);
        add(batch, number, tessera::AlarmEnd::Active);
        if (!store.Write(batch)) {
            std::fprintf(stderr, "%s\n", qPrintable(store.Error()));
            return 1;
        }
        std::printf("%lld\n", static_cast<long long>(number));
        std::fflush(stdout);
    }
}

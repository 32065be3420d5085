// SPDX-License-Identifier: MIT
// A project of fifty open documents in the window of the multi-document run. First input changes as fast as they are
// taken, by the window's own poll, trigger rule, log and worker: half of them one after the other, a quarter while
// documents are held so that others wait, a quarter overtaking a worker that goes on by itself; what the card marks is
// compared with a table of the patterns and a model of the queue. Then the time from an input's edge to the first
// vector of its document, in real time.
//
//     bench_multidoc [CHANGES [EDGES]]          1,000,000 and 200 when not given
#include "bench/multidoc/changes.h"
#include "bench/multidoc/edges.h"
#include "bench/multidoc/plates.h"
#include "bench/support/loadaverage.h"
#include "bench/support/newroot.h"
#include "engine/systemparam.h"
#include "multidoc/multidocmark.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"

#include <algorithm>
#include <cstdio>

namespace {

using namespace bench;

constexpr int kDefaultChanges = 1000000;
constexpr int kDefaultEdges = 200;
constexpr int kFewestChanges = 1000;

bool runChanges(RunRecorder& recorder, int changes) {
    const std::vector<TrigerDoc> entries = mixedEntries();
    setProject(entries);
    tessera_sim_control()->setSpeed(0.0);
    // The machine's record of calls is full only after some hundred thousand of them.
    tessera_sim_control()->setJournalEnabled(false);
    if (!startRun())
        return false;
    Changes all(recorder, entries, changes);
    bool right = all.oneByOne(changes / 2);
    right = right && all.held(changes / 4);
    right = right && all.free(changes - changes / 2 - changes / 4);
    stopRun();
    const bool log = right && all.logIsRight();
    const bool rows = right && all.rowsAreRight();
    return right && log && rows;
}

int run(int changes, int edges) {
    std::printf("bench_multidoc: %d input changes, %d edges, %u documents; load average %s\n", changes, edges,
                kDocuments, loadAverage().c_str());
    SystemParam::Instance()->m_nResponseIO = 1;
    SystemParam::Instance()->SetSaveRunningLog(true);
    MainWindow::InitMainWnd();
    MainWindow::Instance()->show();
    MainWindow::Instance()->ShowMultDocMarkWindow();
    storeDocuments();
    RunRecorder recorder(*MultiDocMark::Instance()->findChild<MultiMarkThread*>(),
                         std::size_t(changes) + std::size_t(edges));
    const bool every = runChanges(recorder, changes);
    std::fflush(stdout);
    const bool fast = measureEdges(edges);
    // The worker tells the recorder until it has ended.
    MainWindow::ClearMainWnd();
    std::printf("load average %s; %s\n", loadAverage().c_str(), every && fast ? "as demanded" : "NOT AS DEMANDED");
    return every && fast ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const int changes = argc > 1 ? QByteArray(argv[1]).toInt() : kDefaultChanges;
    const int edges = argc > 2 ? QByteArray(argv[2]).toInt() : kDefaultEdges;
    if (changes < kFewestChanges || edges < 1) {
        std::fprintf(stderr, "bench_multidoc [CHANGES [EDGES]]: at least %d and 1\n", kFewestChanges);
        return 2;
    }
    return runInNewRoot(argc, argv, [=](QString const&) { return run(changes, edges); });
}

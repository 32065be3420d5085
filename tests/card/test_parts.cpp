// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include "simengine/card/headmap.h"
#include "simengine/card/statuswords.h"

#include <clocale>

using namespace cardtest;
using namespace sim;

TEST(Journal, keeps_calls_in_order_with_rising_times_and_arguments) {
    Journal journal;
    journal.add("SetOutputBit", journalArgs(3, 1));
    journal.add("MoveMirrorPos", journalArgs(1.5, -2.0, 1000.0, 0));
    journal.add("StopMark");
    const auto entries = journal.since(0);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].name, "SetOutputBit");
    EXPECT_EQ(entries[0].args, journalArgs(3, true));
    EXPECT_EQ(std::get<double>(entries[1].args[1]), -2.0);
    EXPECT_TRUE(entries[2].args.empty());
    EXPECT_LE(entries[0].ms, entries[1].ms);
    EXPECT_EQ(entries[2].sequence, 3u);
}

TEST(Journal, since_gives_only_later_calls) {
    Journal journal;
    for (int i = 0; i < 10; ++i)
        journal.add("a", journalArgs(i));
    EXPECT_EQ(journal.since(7).size(), 3u);
    EXPECT_EQ(journal.since(7, 2).size(), 2u);
    EXPECT_EQ(journal.since(7)[0].sequence, 8u);
    EXPECT_TRUE(journal.since(10).empty());
    EXPECT_TRUE(journal.since(99).empty());
}

TEST(Journal, drops_the_oldest_at_its_bound) {
    Journal journal(100);
    for (int i = 0; i < 250; ++i)
        journal.add("a", journalArgs(i));
    EXPECT_EQ(journal.size(), 100u);
    EXPECT_EQ(journal.dropped(), 150u);
    EXPECT_EQ(journal.since(0).front().sequence, 151u);
}

TEST(Journal, clear_keeps_counting_and_disabled_records_nothing) {
    Journal journal;
    journal.add("a");
    journal.clear();
    EXPECT_EQ(journal.size(), 0u);
    EXPECT_EQ(journal.lastSequence(), 1u);
    journal.setEnabled(false);
    journal.add("b");
    EXPECT_EQ(journal.size(), 0u);
    journal.setEnabled(true);
    journal.add("c");
    EXPECT_EQ(journal.since(0).front().sequence, 2u);
}

TEST(Journal, takes_calls_from_many_threads) {
    Journal journal(1000);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&journal] {
            for (int i = 0; i < 2000; ++i)
                journal.add("x", journalArgs(i));
        });
    for (int i = 0; i < 200; ++i) {
        const auto entries = journal.since(0);
        for (std::size_t k = 1; k < entries.size(); ++k) {
            ASSERT_EQ(entries[k].sequence, entries[k - 1].sequence + 1);
            ASSERT_GE(entries[k].ms, entries[k - 1].ms);
        }
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(journal.lastSequence(), 8000u);
}

TEST(IoBank, bits_and_words_agree) {
    IoBank io;
    io.setInputs(0x80000001u);
    EXPECT_TRUE(io.input(0));
    EXPECT_TRUE(io.input(31));
    EXPECT_FALSE(io.input(1));
    EXPECT_TRUE(io.setInput(31, false));
    EXPECT_EQ(io.inputs(), 1u);
    EXPECT_TRUE(io.setOutput(5, true));
    EXPECT_EQ(io.outputs(), 32u);
    EXPECT_TRUE(io.setOutput(5, false));
    EXPECT_EQ(io.outputs(), 0u);
}

TEST(IoBank, lines_that_do_not_exist_are_refused) {
    IoBank io;
    for (int bit : {-1, 32, 1000000, -2147483647}) {
        EXPECT_FALSE(io.setInput(bit, true));
        EXPECT_FALSE(io.setOutput(bit, true));
        EXPECT_FALSE(io.input(bit));
        EXPECT_FALSE(io.output(bit));
    }
    EXPECT_EQ(io.inputs(), 0u);
    EXPECT_EQ(io.outputs(), 0u);
}

TEST(IoBank, listeners_hear_every_write_until_removed) {
    IoBank io;
    std::vector<std::uint32_t> words;
    const int number = io.addOutputListener([&words](int, bool, std::uint32_t word) { words.push_back(word); });
    io.setOutput(0, true);
    io.setOutput(1, true);
    io.setOutput(1, true);
    io.removeOutputListener(number);
    io.setOutput(2, true);
    EXPECT_EQ(words, (std::vector<std::uint32_t>{1, 3, 3}));
}

TEST(IoBank, listener_may_write_outputs_and_inputs) {
    IoBank io;
    io.addOutputListener([&io](int bit, bool on, std::uint32_t) {
        if (bit == 0) {
            io.setOutput(1, on);
            io.setInput(4, on);
        }
    });
    io.setOutput(0, true);
    EXPECT_EQ(io.outputs(), 3u);
    EXPECT_EQ(io.inputs(), 16u);
}

TEST(Faults, unknown_names_are_refused_until_declared) {
    FaultBank faults;
    EXPECT_FALSE(faults.set("driver_alarm_2", true));
    faults.declare("driver_alarm_2");
    EXPECT_TRUE(faults.set("driver_alarm_2", true));
    EXPECT_TRUE(faults.isOn("driver_alarm_2"));
    faults.declare("driver_alarm_2");
    EXPECT_TRUE(faults.isOn("driver_alarm_2"));
    faults.clear();
    EXPECT_FALSE(faults.isOn("driver_alarm_2"));
    EXPECT_FALSE(faults.isOn("no such"));
}

TEST(Faults, each_head_fault_raises_its_own_bit) {
    FaultBank faults;
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"scan_loop", 0x2},          {"scan_feedback_x", 0x4},    {"scan_feedback_y", 0x8},
        {"scan_alarm_x", 16},        {"scan_alarm_y", 32},        {"scan_no_feedback_x", 64},
        {"scan_no_feedback_y", 128}, {"scan_init", 0x200},        {"scan_overcurrent", 0x400},
        {"scan_power", 0x800},       {"scan_position_x", 0x1000}, {"scan_position_y", 0x2000},
        {"scan_link", 0x4000},
    };
    for (const auto& [name, bits] : rows) {
        EXPECT_TRUE(faults.set(name, true)) << name;
        EXPECT_EQ(faults.scanBits(), bits) << name;
        faults.clear();
    }
}

TEST(Trace, snapshot_is_not_touched_by_later_rows_or_passes) {
    Trace trace;
    trace.beginPass();
    for (int i = 0; i < 10000; ++i)
        trace.append({double(i), {double(i), 0}, 1, true, true});
    const TraceSnapshot first = trace.snapshot();
    trace.append({10000, {}, 0, false, false});
    trace.beginPass();
    trace.append({0, {-1, -1}, 0, false, false});
    ASSERT_EQ(first.size(), 10000u);
    for (std::size_t i = 0; i < first.size(); ++i)
        ASSERT_EQ(first[i].at.x, double(i));
    EXPECT_EQ(trace.size(), 1u);
    EXPECT_NE(first.pass(), trace.pass());
}

TEST(Trace, reader_follows_and_starts_again_with_a_new_pass) {
    Trace trace;
    trace.beginPass();
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<TraceRow> rows;
    for (int i = 0; i < 5; ++i)
        trace.append({double(i), {}, 0, false, false});
    EXPECT_EQ(trace.readSince(pass, from, rows, 3), 3u);
    EXPECT_EQ(trace.readSince(pass, from, rows), 2u);
    EXPECT_EQ(rows[1].ms, 4);
    EXPECT_EQ(trace.readSince(pass, from, rows), 0u);
    trace.beginPass();
    trace.append({7, {}, 0, false, false});
    EXPECT_EQ(trace.readSince(pass, from, rows), 1u);
    EXPECT_EQ(rows[0].ms, 7);
    EXPECT_EQ(from, 1u);
}

TEST(Trace, rows_of_a_pass_are_freed_while_the_next_one_grows) {
    constexpr std::size_t kBlocks = 50;
    Trace trace;
    const auto fill = [&trace](std::size_t blocks) {
        for (std::size_t i = 0; i < blocks * TraceSnapshot::kBlockRows; ++i)
            trace.append({double(i), {}, 0, false, false});
    };
    for (int pass = 0; pass < 3; ++pass) {
        trace.beginPass();
        EXPECT_EQ(trace.blocks(), pass == 0 ? 0 : kBlocks) << "not freed in between";
        EXPECT_EQ(trace.size(), 0u);
        fill(kBlocks / 2);
        EXPECT_LE(trace.blocks(), kBlocks);
        fill(kBlocks / 2);
        EXPECT_EQ(trace.blocks(), kBlocks);
    }
    trace.beginPass();
    fill(1);
    trace.beginPass();
    EXPECT_EQ(trace.blocks(), kBlocks);
    EXPECT_EQ(trace.takeOld().size(), kBlocks - 1); // the first block of the short pass stays for the next one
    EXPECT_EQ(trace.blocks(), 1u);
    fill(2);
    const TraceSnapshot seen = trace.snapshot();
    EXPECT_EQ(trace.takeAll().size(), 2u);
    EXPECT_EQ(trace.blocks(), 0u);
    EXPECT_EQ(trace.size(), 0u);
    EXPECT_EQ(seen[5].ms, 5.0);
}

TEST(Trace, keeps_what_was_commanded_and_how_the_jobs_head_marks_it) {
    SimHeadDistortion doubling;
    doubling.scaleX = 2.0;
    Trace trace;
    trace.beginJob(HeadMap::make(doubling, {}, nullptr, false, 0));
    trace.append({0, {1, 2}, 0, false, false});
    const TraceSnapshot first = trace.snapshot();
    EXPECT_EQ(first[0].at, (Point{1, 2}));
    ASSERT_TRUE(first.head());
    EXPECT_EQ(first.head()->marked(first[0].at, 0), (Point{2, 2}));
    EXPECT_FALSE(first.commanded().head());
    EXPECT_EQ(traceCsv(first), "time,x,y,laser,pen\n0.000000,2.000000,2.000000,0,0\n");
    EXPECT_EQ(traceCsv(first.commanded()), "time,x,y,laser,pen\n0.000000,1.000000,2.000000,0,0\n");
    trace.beginPass();
    EXPECT_TRUE(trace.head());
    EXPECT_EQ(trace.snapshot().passOfJob(), 1u);
    trace.beginJob(nullptr);
    EXPECT_FALSE(trace.head());
    EXPECT_EQ(trace.snapshot().passOfJob(), 0u);
    EXPECT_TRUE(first.head()); // what was read stays as it was
}

TEST(Trace, csv_has_its_header_and_plain_numbers_in_any_locale) {
    Trace trace;
    trace.beginPass();
    trace.append({10, {-0.5, 20}, 0, false, false});
    trace.append({1234567.25, {1.0 / 3, 0}, 19, true, true});
    const char* old = std::setlocale(LC_ALL, nullptr);
    const std::string before = old ? old : "C";
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // null where it is not installed: the figures must not change either way
    EXPECT_EQ(traceCsv(trace.snapshot()), "time,x,y,laser,pen\n"
                                          "10.000000,-0.500000,20.000000,0,0\n"
                                          "1234567.250000,0.333333,0.000000,1,19\n");
    std::setlocale(LC_ALL, before.c_str());
}

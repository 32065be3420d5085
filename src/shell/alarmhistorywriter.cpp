// SPDX-License-Identifier: MIT
#include "shell/alarmhistorywriter.h"

#include "shell/alarmhistorycsv.h"
#include "support/durablefile.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace tessera {

namespace {

using Clock = std::chrono::steady_clock;

/// Every write is several waits for the disk; inputs that chatter must not wear it out.
constexpr std::chrono::milliseconds kPace(250);
/// After a failure.
constexpr std::chrono::seconds kRetry(5);

} // namespace

AlarmHistoryWriter::AlarmHistoryWriter(QString file, qint64 startMs, int limit)
    : m_File(std::move(file))
    , m_nStartMs(startMs)
    , m_nLimit(std::max(1, limit)) {}

AlarmHistoryWriter::~AlarmHistoryWriter() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bEnd = true;
    }
    m_Wake.notify_all();
    if (m_Thread.joinable())
        m_Thread.join();
}

void AlarmHistoryWriter::Begin() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    Start();
}

/// With the lock held.
void AlarmHistoryWriter::Start() {
    if (!m_Thread.joinable())
        m_Thread = std::thread([this] { Work(); });
    m_Wake.notify_all();
}

void AlarmHistoryWriter::Save(Entries const& entries) {
    if (entries.isEmpty())
        return;
    const std::lock_guard<std::mutex> lock(m_Lock);
    for (AlarmEntry const& entry : entries)
        m_Batch.entries.insert(entry.number, entry);
    while (m_Batch.entries.size() > m_nLimit)
        m_Batch.entries.erase(m_Batch.entries.begin());
    ++m_nGiven;
    Start();
}

void AlarmHistoryWriter::AcknowledgeOlder(AlarmAcknowledge const& what) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (!m_Batch.allOlder && m_Batch.older.size() < m_nLimit && !m_Batch.older.contains(what.number))
        m_Batch.older.insert(what.number, what);
    ++m_nGiven;
    Start();
}

/// The first that waits keeps its time and its user: a second one finds nothing left to acknowledge.
void AlarmHistoryWriter::AcknowledgeAllOlder(AlarmAcknowledge const& what) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (!m_Batch.allOlder)
        m_Batch.allOlder = what;
    ++m_nGiven;
    Start();
}

void AlarmHistoryWriter::Read(qint64 below, int count, ReadDone done) {
    Post([below, count, done = std::move(done)](AlarmHistoryStore& store) {
        Entries entries;
        const bool good = store.Read(below, count, entries);
        done(entries, good ? QString() : store.Error());
    });
}

void AlarmHistoryWriter::Export(QString const& file, ExportDone done) {
    Post([file, done = std::move(done)](AlarmHistoryStore& store) {
        Entries entries;
        if (store.Read(std::numeric_limits<qint32>::max(), -1, entries))
            done(writeFileDurably(file, AlarmCsv(entries)).message());
        else
            done(store.Error());
    });
}

void AlarmHistoryWriter::Post(Task task) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_Tasks.push_back(std::move(task));
    m_bHurry = true;
    Start();
}

void AlarmHistoryWriter::WaitTried() {
    std::unique_lock<std::mutex> lock(m_Lock);
    const quint64 given = m_nGiven;
    m_bHurry = true;
    Start();
    m_Tried.wait(lock, [this, given] { return m_nTried >= given; });
}

/// What waits to be written goes before a read, so that the read shows it.
void AlarmHistoryWriter::Work() {
    AlarmHistoryStore store(m_File, m_nStartMs, m_nLimit);
    Tell(store.Open() ? QString() : store.Error());
    Clock::time_point next = Clock::now();
    std::unique_lock<std::mutex> lock(m_Lock);
    for (;;) {
        // What was given while a batch was on its way is still to be written when the end is told meanwhile.
        const bool last = m_bEnd;
        const bool hurry = std::exchange(m_bHurry, false) || last;
        if (!m_Batch.IsEmpty() && (hurry || Clock::now() >= next)) {
            WriteBatch(store, lock);
            next = Clock::now() + (m_Error.isEmpty() ? Clock::duration(kPace) : Clock::duration(kRetry));
        }
        if (m_Batch.IsEmpty())
            m_nTried = m_nGiven;
        m_Tried.notify_all();
        if (last)
            return;
        if (!m_Tasks.empty() && !m_bEnd) {
            const Task task = std::move(m_Tasks.front());
            m_Tasks.pop_front();
            lock.unlock();
            task(store);
            lock.lock();
        } else if (!m_bHurry && !m_bEnd) {
            if (m_Batch.IsEmpty())
                m_Wake.wait(lock);
            else
                m_Wake.wait_until(lock, next);
        }
    }
}

void AlarmHistoryWriter::WriteBatch(AlarmHistoryStore& store, std::unique_lock<std::mutex>& lock) {
    AlarmBatch batch;
    std::swap(batch, m_Batch);
    const quint64 given = m_nGiven;
    lock.unlock();
    const bool good = store.Write(batch);
    Tell(good ? QString() : store.Error());
    lock.lock();
    if (!good)
        PutBack(batch);
    m_nTried = given;
}

/// What has come since is newer.
void AlarmHistoryWriter::PutBack(AlarmBatch const& batch) {
    for (auto entry = batch.entries.begin(); entry != batch.entries.end(); ++entry) {
        if (!m_Batch.entries.contains(entry.key()))
            m_Batch.entries.insert(entry.key(), entry.value());
    }
    while (m_Batch.entries.size() > m_nLimit)
        m_Batch.entries.erase(m_Batch.entries.begin());
    for (auto ack = batch.older.begin(); ack != batch.older.end(); ++ack)
        m_Batch.older.insert(ack.key(), ack.value());
    if (batch.allOlder)
        m_Batch.allOlder = batch.allOlder;
}

void AlarmHistoryWriter::Tell(QString const& error) {
    if (error.isEmpty() == m_Error.isEmpty())
        return;
    m_Error = error;
    if (m_Listener)
        m_Listener(error);
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace tessera {

/// What remote parties ordered and what came of it: a line an order, with time, address, order and result, parted by
/// tabs. Lines go to a file below the application root; when it would grow beyond its bound it becomes the former file
/// (its name and ".1", replacing the one before), so that two bounds of disk are the most that it takes. A thread of
/// its own writes, from the first order on; a flood of orders does not slow down who answers them. Any thread.
class RemoteOrderLog {
public:
    /// Bytes of one file.
    static constexpr qint64 kMaxBytes = 1024 * 1024;
    /// Orders that may wait to be written; beyond that they are counted and the count is written.
    static constexpr std::size_t kMaxWaiting = 4096;
    /// Characters of an order and of a result that are kept, and of an address.
    static constexpr int kMaxText = 512;
    static constexpr int kMaxAddress = 128;

    /// `file` as below the application root.
    explicit RemoteOrderLog(QString file = QStringLiteral("/日志文件/RemoteOrders.txt"), qint64 maxBytes = kMaxBytes);
    /// Writes what waits.
    ~RemoteOrderLog();
    RemoteOrderLog(RemoteOrderLog const&) = delete;
    RemoteOrderLog& operator=(RemoteOrderLog const&) = delete;

    /// Keeps an order with the present time and returns at once. `address` tells who gave it ("192.168.1.7:50122"),
    /// `order` what was received, `result` what was answered, empty for no answer. Line ends, tabs and other control
    /// characters are written as escapes, so that no order can forge a line.
    void Add(QString const& address, QString const& order, QString const& result);
    /// Returns when all that was added before is in the file.
    void Flush();
    /// Writes what waits and ends the writing thread; the next order starts it again.
    void Close();

private:
    struct Entry {
        std::chrono::system_clock::time_point time;
        QString address;
        QString order;
        QString result;
    };

    void Work();
    void Write(std::deque<Entry> const& entries, quint64 lost);
    static QByteArray Line(Entry const& entry);

    QString const m_File;
    qint64 const m_nMaxBytes;
    std::mutex m_CloseLock; ///< taken before m_Lock
    std::mutex m_Lock;
    std::condition_variable m_Changed;
    std::deque<Entry> m_Waiting;
    quint64 m_nAdded = 0;   ///< entries so far, lost ones too
    quint64 m_nWritten = 0; ///< of these, handled
    quint64 m_nLost = 0;    ///< entries dropped since the last write
    bool m_bRunning = false;
    bool m_bHurry = false; ///< somebody waits for the file
    bool m_bEnd = false;
    bool m_bFailed = false; ///< writing failed the last time; writing thread
    std::thread m_Thread;
};

} // namespace tessera

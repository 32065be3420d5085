// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace sim {

/// The card's flash: 32 MB that read 0xFF until written. All calls from any thread.
class FlashMemory {
public:
    static constexpr std::uint32_t kSize = 32u << 20;
    /// Most bytes that one write takes.
    static constexpr int kMaxWrite = 2048;

    /// False, and nothing written, for no data, a size outside 1 to kMaxWrite or an address range beyond the flash.
    bool write(std::uint32_t address, const unsigned char* data, int size);
    std::vector<unsigned char> read(std::uint32_t address, std::uint32_t size) const;
    /// First written address and the one behind the last, since the flash was made or erased; 0 and 0 without any.
    std::pair<std::uint32_t, std::uint32_t> extent() const;
    /// Bytes written so far, each write counted.
    std::uint64_t written() const;
    void erase();

private:
    static constexpr std::uint32_t kPage = 4096;
    using Page = std::array<unsigned char, kPage>;
    mutable std::mutex m_mutex;
    std::map<std::uint32_t, std::unique_ptr<Page>> m_pages; ///< by page number, written ones only
    std::uint64_t m_written = 0;
    std::uint32_t m_first = 0;
    std::uint32_t m_end = 0;
};

/// What hangs on the card besides the head and the lines. All calls from any thread.
class CardDevices {
public:
    /// A device on the command channel: true when it answered and filled the results. Called on the caller's thread.
    using CommandHandler = std::function<bool(int code, int a, int b, int& out1, int& out2)>;

    FlashMemory& flash() { return m_flash; }

    /// Number on the waveform outputs; only its four lowest bits exist.
    void setWaveNumber(int number) { m_waveNumber.store(number & 0xF); }
    int waveNumber() const { return m_waveNumber.load(); }

    /// Bits of the hardware word besides those of the laser type.
    void setHardwareBits(std::uint32_t word) { m_hardwareBits.store(word); }
    std::uint32_t hardwareBits() const { return m_hardwareBits.load(); }

    /// Alarm time setting, ms.
    void setAlarmTime(int ms) { m_alarmTime.store(ms); }
    int alarmTime() const { return m_alarmTime.load(); }

    /// Connects a device to the command channel; an empty function takes it off.
    void setCommandHandler(CommandHandler handler);
    /// Sends a command; false, and the results untouched, when nothing answers.
    bool command(int code, int a, int b, int& out1, int& out2);

private:
    FlashMemory m_flash;
    std::atomic<int> m_waveNumber{0};
    std::atomic<std::uint32_t> m_hardwareBits{0};
    std::atomic<int> m_alarmTime{0};
    std::mutex m_mutex;
    std::shared_ptr<const CommandHandler> m_handler;
};

} // namespace sim

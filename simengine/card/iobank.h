// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace sim {

constexpr int kLineCount = 32;

/// A device that drives inputs by itself, such as a laser with its Ready line. Asked on the reader's thread.
class InputDevice {
public:
    /// Lines held high now.
    virtual std::uint32_t drivenInputs() const = 0;

protected:
    ~InputDevice() = default;
};

/// The card's 32 inputs and 32 outputs. Inputs belong to the plant: they are set from outside, card open or not.
/// All calls from any thread; a bit outside 0 to 31 reads as 0 and is not written.
class IoBank {
public:
    /// Told of a written output: bit, its new level, the whole word. Called on the writer's thread, without a lock.
    using OutputListener = std::function<void(int bit, bool on, std::uint32_t word)>;

    /// A line is high when it is set from outside or held high by the device.
    std::uint32_t inputs() const {
        const InputDevice* device = m_device.load(std::memory_order_acquire);
        return m_inputs.load(std::memory_order_acquire) | (device ? device->drivenInputs() : 0u);
    }
    std::uint32_t outputs() const { return m_outputs.load(std::memory_order_acquire); }
    bool input(int bit) const { return isLine(bit) && (inputs() >> bit & 1u); }
    bool output(int bit) const { return isLine(bit) && (outputs() >> bit & 1u); }

    void setInputs(std::uint32_t word) { m_inputs.store(word, std::memory_order_release); }
    /// False for a bit that does not exist.
    bool setInput(int bit, bool on) { return setBit(m_inputs, bit, on, nullptr); }
    /// Connects the device, which stays alive until it is taken off again with null and no reader is under way.
    void setInputDevice(const InputDevice* device) { m_device.store(device, std::memory_order_release); }
    /// Writes one output and tells the listeners, also when the level stays; false for a bit that does not exist.
    bool setOutput(int bit, bool on);

    /// Adds a lamp, a laser line or another follower of the outputs; the number takes it away again. A call already
    /// under way on another thread may still come once after removal.
    int addOutputListener(OutputListener listener);
    void removeOutputListener(int number);

private:
    struct Follower {
        int number;
        OutputListener listener;
    };
    using Followers = std::vector<Follower>;

    static bool isLine(int bit) { return bit >= 0 && bit < kLineCount; }
    static bool setBit(std::atomic<std::uint32_t>& word, int bit, bool on, std::uint32_t* result);

    std::atomic<std::uint32_t> m_inputs{0};
    std::atomic<std::uint32_t> m_outputs{0};
    std::atomic<const InputDevice*> m_device{nullptr};
    std::mutex m_mutex; ///< guards the two below
    std::shared_ptr<const Followers> m_followers = std::make_shared<Followers>();
    int m_lastNumber = 0;
};

} // namespace sim

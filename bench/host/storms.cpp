// SPDX-License-Identifier: MIT
#include "bench/host/storms.h"

#include <deque>
#include <memory>
#include <thread>

namespace bench {

namespace {

constexpr std::chrono::milliseconds kComeBack{5};
/// Questions whose answers may be on their way.
constexpr int kWindow = 2000;

/// Waits as a host that was put out does; false when the storm is over.
bool comeBack(StormTask const& task, Wire& wire, int receiveBuffer = 0) {
    while (!*task.end) {
        std::this_thread::sleep_for(kComeBack);
        if (wire.connect(task.port, "127.0.0.1", receiveBuffer))
            return true;
    }
    return false;
}

/// Every byte in a packet of its own; the answers are read as they come.
bool singleBytes(StormTask const& task) {
    Wire wire;
    const std::string question = kQuestion;
    for (int i = 0; i < task.size && !*task.end; ++i) {
        if (!wire.isOpen() && !comeBack(task, wire))
            break;
        bool sent = true;
        for (char byte : question)
            sent = sent && wire.send(std::string(1, byte));
        const std::string answer = sent ? wire.answer() : std::string();
        if (answer.empty())
            wire.close();
        else if (answer.find("_VZGetLayerParas(") == std::string::npos)
            return false;
    }
    return true;
}

/// Connections that send half an order and then nothing; all stay open to the end.
bool halfOpen(StormTask const& task) {
    std::deque<std::unique_ptr<Wire>> wires;
    for (int i = 0; i < task.size && !*task.end; ++i) {
        wires.push_back(std::make_unique<Wire>());
        if (!comeBack(task, *wires.back()))
            break;
        wires.back()->send("_VZMarkSt");
    }
    while (!*task.end)
        std::this_thread::sleep_for(kComeBack);
    return true;
}

bool resets(StormTask const& task) {
    Wire wire;
    for (int i = 0; i < task.size && !*task.end; ++i) {
        if (!comeBack(task, wire))
            break;
        wire.send(std::string(kQuestion) + "_VZGetLay");
        wire.reset();
    }
    return true;
}

/// Asks as fast as the other end takes it and reads nothing.
bool neverReads(StormTask const& task) {
    std::string many;
    for (int i = 0; i < 100; ++i)
        many += kQuestion;
    Wire wire;
    constexpr int kSmall = 4096;
    for (int i = 0; i < task.size && !*task.end; ++i) {
        if (!wire.isOpen() && !comeBack(task, wire, kSmall))
            break;
        if (!wire.send(many, 200))
            wire.close();
    }
    return true;
}

/// One host with many questions on their way, every answer compared.
bool pipelined(StormTask const& task) {
    Wire wire;
    if (!wire.connect(task.port))
        return false;
    std::atomic<int> answered{0};
    std::thread asking([&] {
        for (int asked = 0; asked < task.size && !*task.end;) {
            const int room = std::min(kWindow - (asked - answered), task.size - asked);
            std::string text;
            for (int i = 0; i < room; ++i)
                text += kQuestion;
            if (room <= 0)
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            else if (!wire.send(text))
                break;
            asked += std::max(room, 0);
        }
    });
    std::size_t at = 0; ///< in the answer under way
    bool good = true;
    while (good && answered < task.size) {
        const std::string got = wire.receive();
        good = !got.empty();
        for (std::size_t i = 0; i < got.size() && good; ++i) {
            good = got[i] == task.answer[at];
            at = (at + 1) % task.answer.size();
            answered += at == 0 ? 1 : 0;
        }
    }
    wire.shutDown();
    asking.join();
    return good;
}

} // namespace

std::vector<StormKind> const& stormKinds() {
    static const std::vector<StormKind> kinds{
        {"single bytes", singleBytes, 20000, 200, false},
        {"half-open hosts", halfOpen, 500, 50, false},
        {"resets in mid-command", resets, 2000, 100, false},
        {"a host that never reads", neverReads, 20000, 1500, false},
        {"pipelined questions", pipelined, 1000000, 20000, true},
    };
    return kinds;
}

} // namespace bench

// SPDX-License-Identifier: MIT
#pragma once

#include "bench/stop/distribution.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

namespace sim {
class CanvasWidget;
}

namespace bench {

/// Keeps every core busy for as long as the object lives.
class BusyCores {
public:
    BusyCores();
    ~BusyCores();

private:
    std::atomic<bool> m_end{false};
    std::atomic<std::uint64_t> m_sink{0};
    std::vector<std::thread> m_threads;
};

/// Sends through a connection on the loopback as fast as the other end reads, for as long as the object lives.
class TcpFlood {
public:
    TcpFlood();
    ~TcpFlood();
    /// False when the connection could not be made.
    bool flows() const { return m_sender.joinable(); }
    std::uint64_t bytes() const { return m_bytes; }

private:
    bool connectBoth();
    void send();
    void receive();

    int m_out = -1;
    int m_in = -1;
    std::atomic<bool> m_end{false};
    std::atomic<std::uint64_t> m_bytes{0};
    std::thread m_sender;
    std::thread m_receiver;
};

/// Moves the active document about at 60 frames a second; each frame draws all of it anew. Made, used and destroyed on
/// the main thread.
class Repaint : public QObject {
public:
    Repaint();
    ~Repaint() override;
    /// Puts 100,000 vertices into the active document. False when there is none.
    static bool fillDocument();
    /// ms that drawing the document took in each frame so far, with what other threads took of the processor meanwhile.
    Distribution const& frames() const { return m_frames; }
    /// ms of its own work that the main thread did for each frame, with all else that it did.
    double workPerFrame() const;

private:
    void move();

    sim::CanvasWidget* m_canvas = nullptr;
    QTimer m_timer;
    Distribution m_frames;
    int m_step = 0;
    double m_begin = 0.0;
};

} // namespace bench

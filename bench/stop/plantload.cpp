// SPDX-License-Identifier: MIT
#include "bench/stop/plantload.h"

#include "bench/support/threadms.h"
#include "engine/qrulerview.h"
#include "shell/mainwindow.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewsession.h"

#include <QCoreApplication>
#include <QResizeEvent>
#include <arpa/inet.h>
#include <cmath>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr int kObjects = 1000;
constexpr int kVertices = 100; ///< of each
constexpr int kFrameMs = 16;

} // namespace

BusyCores::BusyCores() {
    for (unsigned i = 0, cores = std::max(2U, std::thread::hardware_concurrency()); i < cores; ++i) {
        m_threads.emplace_back([this] {
            std::uint64_t value = 1;
            while (!m_end)
                value = value * 6364136223846793005U + 1;
            m_sink += value;
        });
    }
}

BusyCores::~BusyCores() {
    m_end = true;
    for (std::thread& thread : m_threads)
        thread.join();
}

TcpFlood::TcpFlood() {
    if (!connectBoth())
        return;
    m_sender = std::thread([this] { send(); });
    m_receiver = std::thread([this] { receive(); });
}

TcpFlood::~TcpFlood() {
    m_end = true;
    for (int socket : {m_out, m_in}) {
        if (socket >= 0)
            ::shutdown(socket, SHUT_RDWR);
    }
    for (std::thread* thread : {&m_sender, &m_receiver}) {
        if (thread->joinable())
            thread->join();
    }
    for (int socket : {m_out, m_in}) {
        if (socket >= 0)
            ::close(socket);
    }
}

bool TcpFlood::connectBoth() {
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0)
        return false;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    bool good =
        ::bind(listener, plain, size) == 0 && ::listen(listener, 1) == 0 && ::getsockname(listener, plain, &size) == 0;
    m_out = good ? ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) : -1;
    good = good && m_out >= 0 && ::connect(m_out, plain, size) == 0;
    m_in = good ? ::accept(listener, nullptr, nullptr) : -1;
    ::close(listener);
    return m_in >= 0;
}

/// Small pieces, so that there are many packets and not only many bytes.
void TcpFlood::send() {
    const std::vector<char> piece(1024, 'x');
    while (!m_end && ::send(m_out, piece.data(), piece.size(), MSG_NOSIGNAL) > 0) {
    }
}

void TcpFlood::receive() {
    std::vector<char> piece(65536);
    while (!m_end) {
        const ssize_t got = ::recv(m_in, piece.data(), piece.size(), 0);
        if (got <= 0)
            return;
        m_bytes += static_cast<std::uint64_t>(got);
    }
}

Repaint::Repaint() {
    QRulerView* view = MainWindow::Instance()->GetActiveView();
    m_canvas = view ? &QRulerViewAccess::canvas(*view) : nullptr;
    if (!m_canvas)
        return;
    connect(&m_timer, &QTimer::timeout, this, &Repaint::move);
    m_timer.start(kFrameMs);
    m_begin = threadMs();
}

Repaint::~Repaint() = default;

double Repaint::workPerFrame() const {
    return m_frames.count() == 0 ? 0.0 : (threadMs() - m_begin) / static_cast<double>(m_frames.count());
}

bool Repaint::fillDocument() {
    QRulerView* view = MainWindow::Instance()->GetActiveView();
    if (!view)
        return false;
    sim::ObjectList list;
    const int side = static_cast<int>(std::ceil(std::sqrt(kObjects)));
    const double pitch = 96.0 / side;
    for (int i = 0; i < kObjects; ++i) {
        const QPointF corner(-48.0 + (i % side) * pitch, -48.0 + i / side * pitch);
        sim::PolylineShape shape;
        for (int k = 0; k < kVertices; ++k) {
            const double t = static_cast<double>(k) / kVertices;
            shape.points << corner + pitch * QPointF(t * 0.9, 0.45 + 0.4 * std::sin(t * 12.0));
        }
        sim::ObjectData data;
        data.shape = shape;
        data.pen = i % kLayerCount;
        list.push_back(sim::MarkObject::make(std::move(data)));
    }
    QRulerViewAccess::session(*view).document().edit(
        [&](sim::DocumentState const& state) { return sim::edits::add(state, list); });
    QRulerViewAccess::session(*view).document().select({});
    return true;
}

void Repaint::move() {
    if (m_step > 0)
        m_frames.add(m_canvas->lastSceneTime());
    sim::ViewTransform moved = m_canvas->viewTransform();
    ++m_step;
    moved.panBy({m_step % 2 ? 7.0 : -7.0, m_step % 4 < 2 ? 3.0 : -3.0});
    m_canvas->setViewTransform(moved);
    // A picture that takes long to draw is stretched while a finger moves it. As after a change of size it is drawn
    // anew.
    QResizeEvent same(m_canvas->size(), m_canvas->size());
    QCoreApplication::sendEvent(m_canvas, &same);
}

} // namespace bench

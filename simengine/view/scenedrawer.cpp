// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/scenedrawer.h"

#include "simengine/view/gridpainter.h"

#include <QPainter>
#include <QRunnable>
#include <functional>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace sim {

namespace {

/// ms of work of the calling thread.
double threadMs() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The main thread, which the operator feels, and the card go first on a busy machine. Of this thread only; a system
/// that refuses it draws at the usual priority.
void giveWay() {
    constexpr int kNice = 5;
    static thread_local const int given = ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), kNice);
    Q_UNUSED(given)
}

class Task : public QRunnable {
public:
    explicit Task(std::function<void()> work)
        : m_work(std::move(work)) {}
    void run() override { m_work(); }

private:
    std::function<void()> m_work;
};

} // namespace

ScenePicture drawScene(SceneCache& cache, const SceneOrder& order) {
    const double begin = threadMs();
    ScenePicture picture{order, QImage(order.pixels, QImage::Format_RGB32), 0.0};
    picture.image.setDevicePixelRatio(order.ratio);
    cache.setState(order.state);
    QPainter painter(&picture.image);
    paintGrid(painter, order.transform, order.fieldMm);
    ScenePainter(cache, order.transform, order.colors)
        .paint(painter, order.withSelection ? ScenePainter::Part::All : ScenePainter::Part::Unselected);
    picture.workMs = threadMs() - begin;
    return picture;
}

SceneDrawer::SceneDrawer(QObject* parent)
    : QObject(parent) {
    m_cache.setCancellation(m_work.get());
    m_pool.setMaxThreadCount(1);
}

SceneDrawer::~SceneDrawer() {
    m_work->cancel();
    m_pool.waitForDone();
}

void SceneDrawer::draw(const SceneOrder& order) {
    if (m_busy)
        return;
    m_busy = true;
    m_pool.start(new Task([this, order] {
        giveWay();
        const ScenePicture picture = drawScene(m_cache, order);
        QMetaObject::invokeMethod(
            this,
            [this, picture] {
                m_busy = false;
                emit drawn(picture);
            },
            Qt::QueuedConnection);
    }));
}

} // namespace sim

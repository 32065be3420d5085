// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/scenedrawer.h"

#include "engine/marklog.h"
#include "simengine/document/contained.h"
#include "simengine/view/gridpainter.h"

#include <QPainter>
#include <QRunnable>
#include <functional>
#include <limits>
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

QImage gridImage(const SceneOrder& order) {
    QImage image(order.pixels, QImage::Format_RGB32);
    image.setDevicePixelRatio(order.ratio);
    if (image.isNull())
        return image;
    QPainter painter(&image);
    paintGrid(painter, order.transform, order.fieldMm);
    return image;
}

} // namespace

ScenePicture drawScene(SceneCache& cache, const SceneOrder& order) {
    const double begin = threadMs();
    ScenePicture picture{order, gridImage(order), 0.0};
    cache.setState(order.state);
    QPainter painter(&picture.image);
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
        QString fault;
        const ScenePicture picture = drawContained(order, fault);
        QMetaObject::invokeMethod(
            this, [this, picture, fault] { take(picture, fault); }, Qt::QueuedConnection);
    }));
}

/// On the drawing thread.
ScenePicture SceneDrawer::drawContained(const SceneOrder& order, QString& fault) {
    ScenePicture picture{order, QImage(), std::numeric_limits<double>::infinity()};
    if (contained(fault, [&] { picture = drawScene(m_cache, order); }))
        return picture;
    // What was being made is not whole, and what was made before takes memory.
    m_cache = SceneCache();
    m_cache.setCancellation(m_work.get());
    contained(fault, [&] { picture.image = gridImage(order); });
    return picture;
}

void SceneDrawer::take(const ScenePicture& picture, const QString& fault) {
    m_busy = false;
    const bool failed = !fault.isEmpty();
    // Each change of the view is drawn anew; the log is told once.
    if (failed && !m_failed)
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("drawing: ") + fault);
    m_failed = failed;
    emit drawn(picture);
}

} // namespace sim

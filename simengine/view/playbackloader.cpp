// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/playbackloader.h"

#include "simengine/document/contained.h"

namespace sim {

PlaybackLoader::PlaybackLoader(QObject* parent)
    : QObject(parent)
    , m_work(std::make_shared<Cancellation>()) {
    m_pool.setMaxThreadCount(1);
}

PlaybackLoader::~PlaybackLoader() {
    m_work->cancel();
    m_pool.waitForDone();
}

void PlaybackLoader::load(const RunPlan& plan) {
    m_work->cancel();
    const auto work = std::make_shared<Cancellation>();
    m_work = work;
    m_busy = true;
    const quint64 number = ++m_number;
    m_pool.start([this, plan, work, number] {
        std::shared_ptr<const JobTimeline> timeline;
        QString fault;
        contained(fault, [&] {
            TimelineJob job = timelineJob(plan, work.get());
            if (!work->isCancelled())
                timeline = JobTimeline::make(std::move(job), &work->flag());
        });
        QMetaObject::invokeMethod(
            this,
            [this, timeline, fault, number] {
                if (number != m_number || (!timeline && fault.isEmpty()))
                    return;
                m_busy = false;
                if (timeline)
                    emit loaded(timeline);
                else
                    emit failed(fault);
            },
            Qt::QueuedConnection);
    });
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/playbackloader.h"

#include "simengine/document/contained.h"

namespace sim {

PlaybackLoader::PlaybackLoader(QObject* parent)
    : QObject(parent)
    , m_cancelled(std::make_shared<std::atomic<bool>>(false)) {
    m_pool.setMaxThreadCount(1);
}

PlaybackLoader::~PlaybackLoader() {
    m_cancelled->store(true);
    m_pool.waitForDone();
}

void PlaybackLoader::load(const RunPlan& plan) {
    m_cancelled->store(true);
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    m_cancelled = cancelled;
    m_busy = true;
    const quint64 number = ++m_number;
    m_pool.start([this, plan, cancelled, number] {
        std::shared_ptr<const JobTimeline> timeline;
        QString fault;
        contained(fault, [&] {
            if (!cancelled->load())
                timeline = JobTimeline::make(timelineJob(plan), cancelled.get());
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

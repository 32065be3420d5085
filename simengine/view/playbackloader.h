// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/runplan.h"

#include <QObject>
#include <QThreadPool>

namespace sim {

/// Makes the timeline of a run that has not been, on a thread of its own. Main thread.
class PlaybackLoader : public QObject {
    Q_OBJECT
public:
    explicit PlaybackLoader(QObject* parent);
    /// Ends what goes on and waits for it.
    ~PlaybackLoader() override;

    /// Gives up what goes on; loaded() or failed() comes for the last plan alone.
    void load(const RunPlan& plan);
    bool isBusy() const { return m_busy; }
    /// How far it is with the last plan; goes on to be there when the loader is gone.
    std::shared_ptr<const Cancellation> work() const { return m_work; }

signals:
    void loaded(std::shared_ptr<const sim::JobTimeline> timeline);
    /// There is none, and why.
    void failed(const QString& reason);

private:
    QThreadPool m_pool;
    std::shared_ptr<Cancellation> m_work;
    quint64 m_number = 0;
    bool m_busy = false;
};

} // namespace sim

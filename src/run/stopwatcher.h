// SPDX-License-Identifier: MIT
#pragma once

#include "run/stopconfirmation.h"

#include <QObject>
#include <QTimer>
#include <functional>

class IMarkCardBase;
class IOOutputSet;

namespace tessera {

/// Looks at the card and its outputs after a stop has been commanded, until it is confirmed. Only looks. Main thread,
/// but for Ordered.
class StopWatcher : public QObject {
    Q_OBJECT
public:
    /// `goingOn` tells whether a run is under way that nobody has stopped, `runEnded` whether the end of the last one
    /// has been taken in.
    StopWatcher(std::function<bool()> goingOn, std::function<bool()> runEnded, QObject* parent = nullptr);

    /// Time for Ordered, ms.
    static std::int64_t Now();
    /// A stop was commanded at `atMs`, for a run that was under way. Called behind the command, which must not wait.
    /// Any thread; from another than the main thread it is taken there later.
    void Ordered(std::int64_t atMs);
    /// Looks now; nothing while no stop is under way.
    void Look();
    StopState State() const { return m_Confirmation.State(); }

signals:
    void Changed(tessera::StopState state);

private:
    void Take(StopState before);

    std::function<bool()> m_GoingOn;
    std::function<bool()> m_RunEnded;
    StopConfirmation m_Confirmation;
    QTimer m_Timer{this};
};

/// The lamp that tells of a run reads back as it was last written; so does one without an output of its own, which
/// nobody can tell.
bool RunLampReadsBack(IMarkCardBase const& card, IOOutputSet const& outputs);

} // namespace tessera

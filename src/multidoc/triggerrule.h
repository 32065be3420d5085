// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QVector>

namespace tessera {

/// The change of the input word from `last` to `input` puts the watched inputs of `doc` on its pattern.
bool Fires(TrigerDoc const& doc, unsigned int last, unsigned int input);
/// Index of the first entry that fires, -1 when none does: a change starts one document at most.
int FirstThatFires(QVector<TrigerDoc*> const& docs, unsigned int last, unsigned int input);

/// What the trigger rule needs of the machine and of the run.
class TriggerPort {
public:
    virtual ~TriggerPort() = default;

    /// No alarm is active.
    virtual bool isSafe() = 0;
    /// The input word again, once the contacts have had time to settle.
    virtual unsigned int settledInput() = 0;
    /// No run is on.
    virtual bool isIdle() = 0;
    /// The document of this name is open.
    virtual bool isOpen(QString const& name) = 0;
    /// Hands the entry's document to the worker.
    virtual void queueDocument(TrigerDoc const& doc) = 0;
    /// A line for the log.
    virtual void note(QString const& text) = 0;
};

/// Decides which document a change of the input word starts. Main thread.
class TriggerRule {
public:
    /// The word that the next one is compared with.
    unsigned int LastInput() const { return m_nLast; }
    void SetLastInput(unsigned int input) { m_nLast = input; }

    /// Takes an input word. One that does not last, or that comes while an alarm is active, changes nothing, so that
    /// the same change counts when it is seen again. Without a run a word is taken over and starts nothing.
    void InputChange(unsigned int input, QVector<TrigerDoc*> const& docs, TriggerPort& port);

private:
    void Trigger(unsigned int input, QVector<TrigerDoc*> const& docs, TriggerPort& port) const;

    unsigned int m_nLast = 0;
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/markcardinstance.h"
#include "engine/vzmarkcard.h"
#include "simengine/simcontrol.h"
#include "tests/support/journalmatcher.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QWidget>
#include <QtTest>

namespace tests {

/// The child of this name, which must be there.
template<typename T>
T* part(QWidget& widget, QString const& name) {
    T* found = widget.findChild<T*>(name);
    if (!found)
        qFatal("no %s in the window", qPrintable(name));
    return found;
}

/// An open card in a fresh root, its lines at 0.
class OpenCard {
public:
    OpenCard() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard);
        MarkCardInstance::Instance()->OpenCard();
        setInputs(0);
        for (int bit = 0; bit < 32; ++bit)
            MarkCardInstance::Instance()->SetOutputBit(bit, 0);
        control().clearJournal();
    }
    ~OpenCard() {
        MarkCardInstance::Instance()->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }
    static sim::SimControl& control() { return *tessera_sim_control(); }
    static void setInputs(unsigned int word) { control().setInputs(word); }
    static unsigned int outputs() { return control().state().outputs; }
    static bool errorOutput() { return control().state().errorOutput; }
    /// Calls of these names since the journal was last cleared.
    static QVector<JournalEntry> calls(QStringList const& names) {
        return only(toJournal(control().journal(0),
                              [](sim::SimCall const& call) {
                                  JournalEntry entry{call.ms, QString::fromStdString(call.name), {}};
                                  for (sim::SimValue const& value : call.args) {
                                      if (auto const* number = std::get_if<std::int64_t>(&value))
                                          entry.arguments.append(QString::number(*number));
                                  }
                                  return entry;
                              }),
                    names);
    }
};

} // namespace tests

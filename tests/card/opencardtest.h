// SPDX-License-Identifier: MIT
#pragma once

#include "engine/cardfunctions.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardlink.h"
#include "simengine/simcontrol.h"
#include "support/approot.h"

#include <QTemporaryDir>
#include <QtTest>
#include <memory>

/// Calls recorded after number `since`, a line a call: "SetOutputBit(3,1)".
inline QStringList calls(std::uint64_t since) {
    QStringList list;
    for (sim::JournalEntry const& entry : sim::simulatedCard().journal().since(since)) {
        QStringList args;
        for (sim::JournalValue const& value : entry.args) {
            if (auto const* integer = std::get_if<std::int64_t>(&value))
                args << QString::number(*integer);
            else if (auto const* real = std::get_if<double>(&value))
                args << QString::number(*real);
            else
                args << QString::fromStdString(std::get<std::string>(value));
        }
        list << QString::fromStdString(entry.name) + "(" + args.join(",") + ")";
    }
    return list;
}

inline sim::Job squareJob() {
    sim::Job job;
    job.strokes.push_back({0, {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}});
    return job;
}

/// A test that has an open card for each of its cases, as fast as possible, without faults, inputs and outputs, its
/// head in the middle.
class OpenCardTest : public QObject {
    Q_OBJECT

protected slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }
    void init() {
        m_card = std::make_unique<VZMarkCard>();
        m_card->OpenCard();
        QVERIFY(m_card->IsCardOpend());
        sim::simulatedCard().setSpeed(0);
        sim::simulatedCard().setPens({});
        m_card->SetMarkType(MarkTypeLaser);
        m_card->MoveMirrorPos(0, 0, 1000, 0);
        m_begin = sim::simulatedCard().journal().lastSequence();
    }
    void cleanup() {
        m_card.reset();
        sim::simulatedCard().clearFaults();
        sim::simulatedCard().io().setInputs(0);
        for (int bit = 0; bit < sim::kLineCount; ++bit)
            sim::simulatedCard().io().setOutput(bit, false);
        SystemParam::Instance()->SetBufLoop(false);
        VZ_SetFuncMessageDisp(nullptr, nullptr);
    }

protected:
    QTemporaryDir m_root;
    std::unique_ptr<VZMarkCard> m_card;
    std::uint64_t m_begin = 0; ///< number of the last call before the case
};

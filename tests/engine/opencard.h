// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"
#include "engine/markcardinstance.h"
#include "engine/vzmarkcard.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>
#include <memory>

namespace tests {

/// A test with a fresh root and, for each of its cases, an open card that is the machine's.
class OpenCard : public QObject {
    Q_OBJECT

protected slots:
    void initTestCase() {
        m_root = std::make_unique<TemporaryRoot>();
        LayerData::InitLayerData();
    }
    void init() {
        m_card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(m_card);
        m_card->OpenCard();
        QVERIFY(m_card->IsCardOpend());
    }
    void cleanup() {
        m_card->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }
    void cleanupTestCase() { m_root.reset(); }

protected:
    VZMarkCard* m_card = nullptr; ///< of the case; MarkCardInstance owns it

private:
    std::unique_ptr<TemporaryRoot> m_root;
};

} // namespace tests

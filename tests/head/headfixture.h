// SPDX-License-Identifier: MIT
#pragma once

#include "engine/cardfunctions.h"
#include "engine/layerparamex.h"
#include "engine/markcardinstance.h"
#include "engine/profinifile.h"
#include "engine/vzmarkcard.h"
#include "simengine/simcontrol.h"
#include "support/temporaryroot.h"

#include <QPointF>
#include <QtTest>
#include <memory>

namespace tests {

/// The simulated machine and its card below a root of its own, whose jobs take no time.
class HeadFixture {
protected:
    /// False when there is no root for it.
    bool makeMachine() {
        m_root = std::make_unique<TemporaryRoot>();
        if (!m_root->isValid())
            return false;
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        machine().setSpeed(0.0);
        return true;
    }

    static sim::SimControl& machine() { return *tessera_sim_control(); }
    static IMarkCardBase& card() { return *MarkCardInstance::Instance(); }

    static sim::SimHeadDistortion head() {
        sim::SimHeadDistortion head;
        std::string error;
        machine().head(head, error);
        return head;
    }
    static sim::SimOutcome set(sim::SimHeadDistortion const& head) {
        std::string error;
        return machine().setHead(head, error);
    }

    static void markCrosses(QVector<QPointF> const& places) {
        LayerParamEx layers;
        card().DownLayerPara(&layers, 20);
        card().SetMarkType(MarkTypeLaser);
        card().BeginList(1);
        for (QPointF const& p : places) {
            constexpr double h = 2.5;
            DOT3 across[] = {{p.x() - h, p.y(), 0}, {p.x() + h, p.y(), 0}};
            DOT3 up[] = {{p.x(), p.y() + h, 0}, {p.x(), p.y() - h, 0}};
            card().AddList(across, 2, 0);
            card().AddList(up, 2, 0);
        }
        card().EndList();
    }

    QByteArray cardFile() const { return m_root->path("ini/VZMarkPara.cfg").toLatin1(); }
    /// Switches the correction table and lets the card read its parameters anew.
    void enableTable(bool on) const {
        XProfIniFile_CardCfg::Instance()->WriteInt("HARDWARE", "bHighPrecisionCali", on ? 1 : 0);
        VZ_SetCardParaFile(cardFile().constData());
    }
    static bool hasTable() { return machine().state().gridCorrection; }

    std::unique_ptr<TemporaryRoot> m_root;
};

} // namespace tests

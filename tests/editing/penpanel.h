// SPDX-License-Identifier: MIT
#pragma once

#include "editing/marklayerparamform.h"
#include "engine/markingmparam_vz.h"
#include "engine/systemparam.h"
#include "tests/editing/editingfixture.h"

#include <QCheckBox>
#include <QPushButton>

namespace tests {

/// What the pen panel goes by as it is delivered: the default pen, the type of the laser, no serial laser.
inline void resetPenPanel() {
    LayerData::SetDefaultLatyerData(LayerData());
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    MarkingMParam_VZ::Instance()->SetIPG100WType(FilberIPG20W);
    SystemParam::Instance()->SetEnableLayLaser(false);
}

/// The pen panel with a document of its own.
struct PenPanel {
    /// Shows a pen of the document as it is now.
    void show(int pen) {
        form.DocChange(&document.view);
        form.SetLayerIndex(pen);
        form.ResetLayerData();
    }
    QDoubleSpinBox* box(char const* name) { return part<QDoubleSpinBox>(form, name); }
    QCheckBox* useDefault() { return part<QCheckBox>(form, "checkBoxUseDefault"); }
    void press(char const* name) { part<QPushButton>(form, name)->click(); }
    /// Changes a pen behind the panel's back.
    void setPen(int index, std::function<void(LayerData&)> const& change) {
        LayerData* pen = nullptr;
        document.view.GetLayerParams()->GetLayerData(index, pen);
        change(*pen);
    }

    DocumentFixture document;
    MarkLayerParamForm form;
};

} // namespace tests

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"

#include <QDialog>

class EditPower;
class LayerParamEx;
class ListPFEdit;
class QCheckBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QSpinBox;
class QTabWidget;

/// Delays, wobble and power curves of one pen. The dialog changes its own copy of the pen; the caller stores it when
/// the dialog was accepted. Main thread.
class AdvanceLayerParam : public QDialog {
    Q_OBJECT
public:
    /// `layers` is the pen table that `pen` is copied from; the dialog leaves it alone.
    AdvanceLayerParam(LayerData const& pen, LayerParamEx const* layers, QWidget* parent);

    LayerData const& Data() const { return m_Data; }
    /// Power curves are offered: always when marking, otherwise from the user-defined mode on when they are enabled.
    static bool HasCurves();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Curve {
        ListPFEdit* table = nullptr;
        EditPower* drawing = nullptr;
    };

    void AddBasicTab();
    Curve AddCurveTab(bool isLine, bool enable, bool xIsDistance, QPointF const* points, char const* key);
    QSpinBox* AddDelay(QFormLayout* form, char const* key, char const* name, int value);
    QDoubleSpinBox* AddLength(QFormLayout* form, char const* key, char const* unit, char const* name);
    void pushBtnClicked();
    void tabPageChanged(int index);
    void on_AdvanceLayerParam_accepted();
    void Store();

    LayerData m_Data;
    QTabWidget* m_pTabs;
    QPushButton* m_pConfirm;
    QPushButton* m_pCancel;
    QSpinBox* m_pMaxJumpDelay = nullptr;
    QSpinBox* m_pMinJumpDelay = nullptr;
    QSpinBox* m_pMarkDelay = nullptr;
    QDoubleSpinBox* m_pMaxJumpDelayDist = nullptr;
    QDoubleSpinBox* m_pPointTime = nullptr;
    QCheckBox* m_pWobble = nullptr;
    QDoubleSpinBox* m_pWobbleDiameter = nullptr;
    QDoubleSpinBox* m_pWobbleSpacing = nullptr;
    Curve m_PointCurve;
    Curve m_LineCurve;
};

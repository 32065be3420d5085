// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"

#include <QColor>
#include <QPointer>
#include <QWidget>
#include <memory>

class QDoubleSpinBox;
class QLabel;
class QRulerView;
class Ui_MarkLayerParamForm;

/// The pens of the active document: a table of their colours and the everyday parameters of the selected one. Nothing
/// typed reaches the pen before it is applied; a colour does at once. Whoever runs a job downloads the pens. Without a
/// document the panel shows nothing and changes nothing. Main thread.
class MarkLayerParamForm : public QWidget {
    Q_OBJECT
public:
    explicit MarkLayerParamForm(QWidget* parent = nullptr);
    ~MarkLayerParamForm() override;

    /// Another document is the active one, or none: its pens' colours are shown.
    void DocChange(QRulerView* doc);
    /// Selects pen `index`, pen 0 for one that does not exist.
    void SetLayerIndex(int index);
    /// The selection changed: the pen of its first object is selected and becomes the document's current one.
    void SelectObjChanged();
    /// Shows the selected pen as the document has it.
    void ResetLayerData();
    /// The same on request of another subsystem, which the debug log tells.
    void UpdateLayerData();
    /// Adapts the rows to the laser that is set.
    void ResetUI();
    void SetUIText();
    /// The height at which nothing has to be scrolled, px.
    int GetWindowsHeight() const;

private slots:
    void on_comboBoxLayerIndex_currentIndexChanged(int index);
    void on_tableWidgetLayer_itemSelectionChanged();
    void on_pushButtonSetLayerColor_clicked();
    void on_pushButtonApply_clicked();
    void on_pushButtonSetDefault_clicked();
    void on_pushButtonAdvance_clicked();
    /// Draws squares that each mark with other values, on pens that nothing uses; the selected pen is their model and
    /// the labels'.
    void on_pushButtonTestGrid_clicked();
    void on_checkBoxUseDefault_toggled(bool on);
    void on_doubleSpinBoxPWM_valueChanged(double value);
    void on_doubleSpinBoxFre_valueChanged(double value);
    void on_doubleSpinBoxMarkSpeed_valueChanged(double value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct RealRow;
    struct IntRow;
    static RealRow const kRealRows[];
    static IntRow const kIntRows[];

    void FillTable();
    void SetLimits();
    /// The selected pen of the document; null without a document or pen.
    LayerData* Pen() const;
    void ShowValues(LayerData const& values);
    void SetLayerData();
    void SetLayerDataDefault();
    void ApplyParam();
    void EnableRows();
    void ShowSwatch();
    void SetSwatch(QColor const& color);

    std::unique_ptr<Ui_MarkLayerParamForm> ui;
    QPointer<QRulerView> m_pDoc;
    QColor m_Swatch;
    bool EmitLayerChange = true;
    bool LayerLoaded = true;
};

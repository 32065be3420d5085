// SPDX-License-Identifier: MIT
#pragma once

#include "engine/fillparam.h"

#include <QDialog>
#include <QVector>
#include <memory>

class Ui_FillParamSet;

/// Edits the three hatch fills of the selected objects and what concerns the object as a whole. It changes its own copy
/// only; the caller applies the result of an accepted dialog. Main thread.
class FillParamSet : public QDialog {
    Q_OBJECT
public:
    /// More than three fills are cut off, missing ones are fills as delivered.
    FillParamSet(QVector<FillParam> fills, bool enableEdge, bool markFillFirst, bool showSimple,
                 QWidget* parent = nullptr);
    ~FillParamSet() override;

    void SetUIText();

    QVector<FillParam> Fills; ///< always 3
    bool EnableEdge;          ///< the outline is marked
    bool MarkFillFirst;       ///< the hatch is marked before the outline
    bool ShowSimple;          ///< the hatch is drawn in the simple way

private slots:
    void on_checkBoxEnableFill_toggled(bool on);
    void on_doubleSpinBoxFillDist_valueChanged(double value);
    void on_doubleSpinBoxFillAngle_valueChanged(double value);
    void on_comboBoxFillLayer_currentIndexChanged(int index);
    void on_doubleSpinBoxFillOffset_valueChanged(double value);
    void on_spinBoxEdgeCnt_valueChanged(int value);
    void on_comboBoxFillType_currentIndexChanged(int index);
    void on_checkBoxEnableEdge_toggled(bool on);
    void on_checkBoxMarkFillFirst_toggled(bool on);
    void on_radioButtonFill1_toggled(bool on);
    void on_radioButtonFill2_toggled(bool on);
    void on_radioButtonFill3_toggled(bool on);
    void on_pushButtonOK_clicked();
    void on_pushButtonOKCancel_clicked();

private:
    void Load(int fill);
    template<typename T>
    void Store(T FillParam::*field, T value) {
        if (Ready)
            Fills[CurrentFill].*field = value;
    }

    std::unique_ptr<Ui_FillParamSet> ui;
    bool Ready = false;
    int CurrentFill = 0;
};

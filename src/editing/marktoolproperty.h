// SPDX-License-Identifier: MIT
#pragma once

#include "engine/basepoint.h"

#include <QPointer>
#include <QWidget>
#include <memory>

class CenterType;
class QDoubleSpinBox;
class QRulerView;
class Ui_MarkToolProperty;

/// Shows and changes place, size and angle of the selection, its working state and its hatch. The document does the
/// geometry; the panel turns what is typed into relative operations and logs them. Whether it may be used at all is
/// set from outside by its own enabled state; without a selection its content is disabled. Main thread.
class MarkToolProperty : public QWidget {
    Q_OBJECT
public:
    explicit MarkToolProperty(QWidget* parent = nullptr);
    ~MarkToolProperty() override;

    /// Follows another document; null leaves the panel without one.
    void SetRulerView(QRulerView* view);
    void SetUIText();

public slots:
    /// Shows the selection as it is. Only values that differ are written, so that the others' boxes emit nothing.
    void SelectObjChange();
    void SelectObjChange(double x, double y, double width, double height, double angle, int count, int workType);
    void BasePointChanged(BasePoint point);
    /// Step of the arrow keys and of the boxes, mm; a text that is no number is ignored.
    void MoveDistChanged(QString const& text);
    void ChangePosX(double value);
    void ChangePosY(double value);
    void ChangeWidth(double value);
    void ChangeHeight(double value);
    void ChangeAngle(double value);
    /// The width shown, with the angle of the selected objects taken as theirs again.
    void ChangeWidth();
    void Move2Center();
    void on_comboBoxWorkType_currentIndexChanged(int index);
    void on_pushButtonFill_clicked();
    void on_pushButtonApply_clicked();

private:
    struct Place {
        double x = 0.0;
        double y = 0.0;
        double width = 0.0;
        double height = 0.0;
        double angle = 0.0;
    };

    bool Read(Place& place) const;
    /// The place to edit; false while the panel is being filled, without a document or without an answer of it.
    bool Editable(Place& place) const;
    void ShowPlace(Place const& place);
    void ShowStep();
    bool ScaleWidth(double value);
    void Log(char const* key) const;
    void Log(char const* key, double value) const;
    void LogText(QString const& text) const;
    bool CanFill() const;

    std::unique_ptr<Ui_MarkToolProperty> ui;
    CenterType* m_pCenterType;
    QPointer<QRulerView> m_pView;
    bool Ready = true;
};

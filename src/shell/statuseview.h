// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"

#include <QFrame>
#include <QString>
#include <QVector>
#include <memory>

class QLabel;
class Ui_StatuseView;

/// Status frame of the left panel: order of the objects, switches of red light and protective gas, message list.
/// Main thread.
class StatuseView : public QFrame {
    Q_OBJECT
public:
    explicit StatuseView(QWidget* parent = nullptr);
    ~StatuseView() override;

    /// Appends a line; the kind is not shown.
    void ShowText(QString const& text, DebugInfoType type);
    void ClearText();
    /// The list consists of exactly these lines.
    bool Shows(QVector<QString> const& texts) const;
    /// Name and state of a switch. A `bit` below 0 (output not fitted) disables the picture and leaves it as it was.
    void SetProtectGas(int bit, QString const& name);
    void SetRedLight(int bit, QString const& name);
    QLabel* RedLabel() const;
    QLabel* GasLabel() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void on_pushButtonMoveUp_clicked();
    void on_pushButtonMoveTop_clicked();
    void on_pushButtonMoveDown_clicked();
    void on_pushButtonMoveBotton_clicked();

private:
    std::unique_ptr<Ui_StatuseView> ui;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <array>
#include <memory>

class QCheckBox;
class Ui_AddMultiDoc;
struct TrigerDoc;

/// Asks for one entry of a multi-document project: a document and the pattern of the inputs that marks it. Short-lived,
/// run with exec(). Main thread.
class AddMultiDoc : public QDialog {
    Q_OBJECT
public:
    /// Shows `doc` and writes the result into it when it is accepted. An entry that is edited keeps its document.
    AddMultiDoc(TrigerDoc* doc, bool edit, QWidget* parent);
    ~AddMultiDoc() override;

    /// Offers the inputs that machines have wired; the file holds 32.
    void InitUI();
    /// Offers the documents that there are; makes their folder when it is missing.
    void LoadFiles();

private slots:
    void OnCheckStateChange(int state);
    void on_pushButtonOK_clicked();
    void on_pushButtonCancel_clicked();

private:
    static constexpr int kInputs = 32;

    void SetUIText(bool edit);
    void ShowDoc();

    TrigerDoc* m_pDoc;
    std::unique_ptr<Ui_AddMultiDoc> ui;
    std::array<QCheckBox*, kInputs> m_Masks{};
    std::array<QCheckBox*, kInputs> m_Values{};
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>
#include <memory>

class Ui_Form_ShowImportInfo;

/// The report of an import of measured calibration data: nine values in a small window that stays on top and deletes
/// itself when it is closed. Main thread.
class Form_ShowImportInfo : public QDialog {
    Q_OBJECT
public:
    Form_ShowImportInfo(QWidget* parent, QString const& rows, QString const& unknownLines, QString const& outOfRange,
                        QString const& emptyLines, QString const& missing, QString const& centreOffset,
                        QString const& reordered, QString const& result, QString const& largestDeviation);
    ~Form_ShowImportInfo() override;

private:
    std::unique_ptr<Ui_Form_ShowImportInfo> ui;
};

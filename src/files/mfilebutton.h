// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <memory>

class FileListView;
class Ui_MFileButton;

/// One row of the open documents: the document's name and a button that closes it. Main thread.
class MFileButton : public QWidget {
    Q_OBJECT
public:
    MFileButton(FileListView* view, QString const& name);
    ~MFileButton() override;

    QString GetFileName() const { return m_FileName; }
    void SetFileName(QString const& name);
    /// Draws the name as that of the current row, or not.
    void SetCurrent(bool current);
    void SetUIText();

private slots:
    void on_pushButton_clicked();

private:
    std::unique_ptr<Ui_MFileButton> ui;
    FileListView* m_pView;
    QString m_FileName;
    bool m_bCurrent = false;
};

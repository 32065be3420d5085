// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <memory>

class FileListWidget;
class MFileButton;
class Ui_FileListView;

/// The open documents, one row each in the order of their views; the current row is the active document. It only shows
/// and tells: who listens to the signals opens and closes. Main thread.
class FileListView : public QFrame {
    Q_OBJECT
public:
    explicit FileListView(QWidget* parent = nullptr);
    ~FileListView() override;

    /// Appends a row and makes it the current one.
    void AddFile(QString const& name);
    /// Appends a row.
    void AddItem(QString const& name);
    /// Puts a row before row `row` and makes it the current one.
    void InsertFile(int row, QString const& name);
    /// Makes a row the current one; an index without a row leaves none.
    void SetActive(int index);
    /// Renames the first row of this name.
    void ChangeFileName(QString const& old, QString const& now);
    /// Closes the document of this name after storing it. With `ask` the operator is asked whether to store it and may
    /// keep it open.
    void CloseFile(QString const& name, bool ask);
    /// Takes the first row of this name out and tells ClosedFile. Which row is current then is the list's choice, told
    /// by ActivDocChanged before the row goes.
    void RemoveItem(QString const& name, bool save);
    /// Moves a row and tells ChangeFileIndex; the moved row is the current one then, without ActivDocChanged.
    void OnChangeFileIndex(int from, int to);
    void SetUIText();

    void on_listWidget_currentRowChanged(int row);
    void on_listWidget_itemSelectionChanged();

signals:
    /// A row became the current one; -1 when none is left.
    void ActivDocChanged(int index);
    void ChangeFileIndex(int from, int to);
    /// The row is gone; the document is to be closed, stored first with `save`.
    void ClosedFile(int index, bool save);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    MFileButton* Button(int row) const;
    int RowOf(QString const& name) const;
    void InsertItem(int row, QString const& name);
    void SetRowName(int row, QString const& name);

    std::unique_ptr<Ui_FileListView> ui;
    FileListWidget* m_pList;
    /// Cleared while a row is moved.
    bool m_bAnswerRows = true;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>

/// The rows of the open documents. The arrow keys move the current row, not the selection. Main thread.
class FileListWidget : public QListWidget {
    Q_OBJECT
public:
    explicit FileListWidget(QWidget* parent = nullptr);

    /// Asks for row `from` to be moved to `to`.
    void ChangeIndex(int from, int to);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void ChangeFileIndex(int from, int to);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

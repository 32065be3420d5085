// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>

/// Shows a picture over its whole area, white without one, and below it a text: its one child, which gets the strip at
/// the lower edge. Main thread.
class BackImgWidget : public QWidget {
    Q_OBJECT
public:
    explicit BackImgWidget(QWidget* parent = nullptr);

    /// A null pixmap gives white.
    void SetPixmap(QPixmap const& pixmap);
    /// Colour of the text; an invalid one is black.
    void SetTextColor(QColor color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPixmap m_Pixmap;
};

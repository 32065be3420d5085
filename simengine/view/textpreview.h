// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QPainterPath>
#include <QWidget>

namespace sim {

/// Shows a text as it will be marked, as large as there is room, with its width and height in mm.
class TextPreview : public QWidget {
    Q_OBJECT
public:
    explicit TextPreview(QWidget* parent);
    /// Shows the outline; an empty one shows nothing.
    void setOutline(const PathShape& outline);
    /// "12.345 × 5.000 mm", empty without an outline.
    QString sizeText() const { return m_size; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPainterPath m_path; ///< mm, y upwards
    QRectF m_bounds;     ///< mm
    QString m_size;
};

} // namespace sim

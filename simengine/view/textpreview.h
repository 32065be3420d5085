// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QPainterPath>
#include <QWidget>

namespace sim {

/// Shows a text or a code as it will be marked, as large as there is room, with its width and height in mm.
class TextPreview : public QWidget {
    Q_OBJECT
public:
    explicit TextPreview(QWidget* parent);
    /// Shows the outline; an empty one shows nothing.
    void setOutline(const PathShape& outline);
    /// Shows a code: areas filled, lines and dots as wide as they are meant to be. `module` in mm.
    void setCode(const CodeShape& code, double module);
    /// "12.345 × 5.000 mm", empty without an outline.
    QString sizeText() const { return m_size; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setPath(const PathShape& outline, const QVector<QPointF>& dots);

    QPainterPath m_path; ///< mm, y upwards
    QVector<QPointF> m_dots;
    bool m_filled = false;
    double m_lineWidth = 0.0; ///< mm; 0 a thin line
    QRectF m_bounds;          ///< mm
    QString m_size;
};

} // namespace sim

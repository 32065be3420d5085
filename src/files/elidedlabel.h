// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace tessera {

/// A label of one line that may be narrower than its text: dots then stand for the middle, since the end of a path
/// tells more than its middle. text() is the whole text.
class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tessera

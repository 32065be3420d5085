// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerparamex.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>

/// Fills a document through the boundary alone: a drawing of `squares` separate squares of 4 mm.
inline void addSquares(QRulerView& view, tests::TemporaryRoot& root, int squares) {
    QByteArray svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="60mm" height="60mm" viewBox="0 0 60 60">)";
    for (int i = 0; i < squares; ++i)
        svg += "<rect fill=\"none\" stroke=\"#000000\" x=\"" + QByteArray::number(5 + 6 * i) +
               "\" y=\"10\" width=\"4\" height=\"4\"/>";
    svg += "</svg>";
    QVERIFY(root.write("/squares.svg", svg));
    QString error;
    QVERIFY2(view.ImportVectorFile(root.path("squares.svg"), error), qPrintable(error));
    QCOMPARE(view.GetMarkTools()->GetMarkTools().size(), squares);
}

/// Sets the mark and jump speed (mm/s) of all pens.
inline void setSpeed(QRulerView& view, double speed) {
    for (LayerData& pen : view.GetLayerParams()->GetLayerData()) {
        pen.MarkSpeed = speed;
        pen.JumpSpeed = speed;
    }
}

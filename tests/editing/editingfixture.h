// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerparamex.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/vzlistviewex.h"
#include "support/approot.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/logtexts.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QItemSelectionModel>
#include <QtTest>

namespace tests {

/// An SVG drawing of rectangles: x, y, width, height in mm, y downwards.
inline QByteArray drawing(QVector<QRectF> const& rects) {
    QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='100mm' height='100mm' viewBox='0 0 100 100'>";
    for (QRectF const& rect : rects)
        svg += QStringLiteral("<rect x='%1' y='%2' width='%3' height='%4'/>")
                   .arg(rect.x())
                   .arg(rect.y())
                   .arg(rect.width())
                   .arg(rect.height())
                   .toUtf8();
    return svg + "</svg>";
}

/// The child of this name, which must be there.
template<typename T>
T* part(QWidget& widget, char const* name) {
    T* found = widget.findChild<T*>(QString::fromLatin1(name));
    if (!found)
        qFatal("no %s in the panel", name);
    return found;
}

/// A document in a fresh root, without a main window.
class DocumentFixture {
public:
    DocumentFixture() { QRulerView::Init(); }

    /// Adds rectangles, which are then selected all together.
    void addRects(QVector<QRectF> const& rects) {
        QVERIFY(root.write(QStringLiteral("/drawing.svg"), drawing(rects)));
        QString error;
        QVERIFY2(view.ImportVectorFile(root.path(QStringLiteral("/drawing.svg")), error), qPrintable(error));
    }
    /// Selects these objects one after the other; none for an empty list.
    void select(QVector<int> const& rows) {
        QListView* list = view.GetObjListView();
        list->clearSelection();
        for (int row : rows)
            list->selectionModel()->select(list->model()->index(row, 0), QItemSelectionModel::Select);
    }
    QList<int> selected() { return view.GetMarkTools()->GetSelectedIndex(); }
    LayerData pen(int index) {
        LayerData data;
        view.GetLayerParams()->GetLayerData(index, data);
        return data;
    }

    TemporaryRoot root;
    QRulerView view{nullptr};
};

} // namespace tests

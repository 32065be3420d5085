// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "simengine/document/curveedits.h"
#include "simengine/document/hatch.h"
#include "simengine/document/strokefonts.h"
#include "simengine/view/arraydialog.h"
#include "simengine/view/frontendlink.h"
#include "simengine/view/qrulerview_p.h"
#include "simengine/view/runningjob.h"

#include <QPointer>

using sim::DocumentState;
using sim::EditResult;
using sim::edits::Alignment;

namespace {

/// Angle told when nothing is selected; panels show no selection above 180.
constexpr double kNoSelectionAngle = 1000.0;

/// Most segments that this hatch would give one of the selected objects.
qint64 largestHatch(const DocumentState& state, const sim::HatchSettings& hatch) {
    qint64 largest = 0;
    for (int index : state.selection.ascending()) {
        const sim::ObjectPtr object = state.at(index);
        if (object->kind() == sim::ObjectKind::Group)
            continue;
        sim::ObjectData data = object->data();
        data.hatch = hatch;
        largest = qMax(largest, sim::MarkObject(std::move(data)).hatchSegmentCount());
    }
    return largest;
}

} // namespace

void QRulerView::Undo() {
    d->canvas->cancelGesture();
    d->session.document().undo();
}

void QRulerView::Redo() {
    d->canvas->cancelGesture();
    d->session.document().redo();
}

void QRulerView::RedoUndoStatus(bool& redo, bool& undo) const {
    redo = d->session.document().canRedo();
    undo = d->session.document().canUndo();
}

void QRulerView::SetReadOnly(bool readOnly) {
    if (d->session.document().isReadOnly() == readOnly)
        return;
    d->canvas->cancelGesture();
    d->session.document().setReadOnly(readOnly);
    emit d->session.changed();
}

void QRulerView::Sort() {
    d->edit(sim::edits::sortByJumps);
}

void QRulerView::Combine() {
    d->edit(sim::edits::group);
}

void QRulerView::UnCombine() {
    d->edit(sim::edits::ungroup);
}

void QRulerView::CombineCurve() {
    CombineCurve(false);
}

void QRulerView::CombineCurve(bool closed) {
    d->edit([closed](const DocumentState& state) { return sim::edits::combineCurves(state, closed); });
}

void QRulerView::UnCombineLine() {
    d->edit(sim::edits::splitCurves);
}

bool QRulerView::CanSplit() const {
    return sim::edits::canSplitCurves(*d->session.state());
}

bool QRulerView::CanCombineCurve() const {
    return sim::edits::canCombineCurves(*d->session.state());
}

bool QRulerView::CanUnCombine() const {
    const sim::StatePtr state = d->session.state();
    const QList<int>& selected = state->selection.ordered();
    return std::any_of(selected.begin(), selected.end(),
                       [&](int index) { return state->at(index)->kind() == sim::ObjectKind::Group; });
}

void QRulerView::Private::align(Alignment alignment) {
    edit([alignment](const DocumentState& state) { return sim::edits::align(state, alignment); });
}

void QRulerView::AlignLeft() {
    d->align(Alignment::Left);
}

void QRulerView::AlignCenterH() {
    d->align(Alignment::CenterH);
}

void QRulerView::AlignRight() {
    d->align(Alignment::Right);
}

void QRulerView::AlignTop() {
    d->align(Alignment::Top);
}

void QRulerView::AlignCenterV() {
    d->align(Alignment::CenterV);
}

void QRulerView::AlignBottom() {
    d->align(Alignment::Bottom);
}

void QRulerView::Private::sameSize(bool width, bool height) {
    edit([=](const DocumentState& state) { return sim::edits::sameSize(state, width, height); });
}

void QRulerView::SameSelectedSize() {
    d->sameSize(true, true);
}

void QRulerView::SameSelectedWidth() {
    d->sameSize(true, false);
}

void QRulerView::SameSelectedHeight() {
    d->sameSize(false, true);
}

void QRulerView::MirrorSelectObj(MirrorType type) {
    d->edit([type](const DocumentState& state) { return sim::edits::mirror(state, type); });
}

void QRulerView::ArraySelectObj() {
    const sim::StatePtr state = d->session.state();
    if (state->selection.isEmpty() || d->session.document().isReadOnly())
        return;
    const sim::Box box = sim::selectionBounds(*state);
    // A controlling station may close the document while the dialog asks.
    const QPointer<QRulerView> view(this);
    sim::ArrayDialog dialog(QSizeF(box.width(), box.height()), window());
    if (dialog.exec() != QDialog::Accepted || !view)
        return;
    const sim::ArrayCells cells = dialog.cells();
    d->edit([cells](const DocumentState& now) {
        return sim::edits::array(now, cells.columns, cells.rows, cells.stepX, cells.stepY);
    });
}

void QRulerView::DissimilationSelectObj(DissimilationParam* param) {
    if (!param)
        return;
    const DissimilationParam pattern = *param;
    d->edit([&pattern](const DocumentState& state) { return sim::edits::roughen(state, pattern); });
}

void QRulerView::AddMarkPoint(QPointF const& point) {
    d->canvas->cancelGesture();
    d->session.addShape(sim::PointShape{point, -1.0});
}

bool QRulerView::AddText(QPointF const& mm, QString const& text, double height) {
    d->canvas->cancelGesture();
    sim::TextSpec spec;
    spec.text = text;
    spec.family = QLatin1String(sim::strokeFonts().front().name);
    spec.height = height;
    return d->session.addText(spec, mm);
}

int QRulerView::GetSelectedToolCnt() const {
    return d->session.state()->selection.count();
}

int QRulerView::GetFirstSelectedToolIndex() const {
    return d->session.state()->selection.first();
}

int QRulerView::GetToolLayer(int index) const {
    const sim::StatePtr state = d->session.state();
    return index >= 0 && index < state->count() ? state->at(index)->pen() : -1;
}

bool QRulerView::GetSelectObjPos(double& x, double& y, double& width, double& height, double& angle) const {
    const auto place = sim::selectionPlace(*d->session.state(), GetBasePoint());
    x = place ? place->base.x() : 0.0;
    y = place ? place->base.y() : 0.0;
    width = place ? place->width : 0.0;
    height = place ? place->height : 0.0;
    angle = place ? place->angle : kNoSelectionAngle;
    return true;
}

int QRulerView::GetSelectObjWorkType() const {
    return sim::selectionWorkType(*d->session.state());
}

void QRulerView::SetSelectObjWorkType(int type) {
    d->edit([type](const DocumentState& state) { return sim::edits::setWorkType(state, type); });
}

void QRulerView::ScaleSelectedObj(double scaleX, double scaleY, double x, double y) {
    d->edit([=](const DocumentState& state) { return sim::edits::scale(state, scaleX, scaleY, x, y); });
}

// The beam of a running preview follows at once, not after the round that it is on.
void QRulerView::MoveSelectObjRelative(double dx, double dy) {
    const bool moved = d->edit([=](const DocumentState& state) { return sim::edits::move(state, dx, dy); });
    if (moved && sim::previewRuns())
        sim::renewPreview();
}

void QRulerView::MoveSelected2Center() {
    const QPointF center = d->canvas->fieldMm().center();
    d->edit([center](const DocumentState& state) { return sim::edits::moveToCenter(state, center); });
}

void QRulerView::ChangeSelectedObjAngle(double angle) {
    d->edit([angle](const DocumentState& state) { return sim::edits::setAngle(state, angle); });
}

void QRulerView::FillSelectedObj(QVector<FillParam> const& fills, bool edge, bool fillFirst, bool simple) {
    sim::HatchSettings hatch;
    for (int i = 0; i < qMin(kFillCount, fills.size()); ++i)
        hatch.fills[i] = fills[i];
    hatch.enableEdge = edge;
    hatch.markFillFirst = fillFirst;
    hatch.showSimple = simple;
    if (!hatch.hasValues() || d->session.document().isReadOnly())
        return;
    if (d->edit([&hatch](const DocumentState& state) { return sim::edits::setHatch(state, hatch); }))
        return;
    const qint64 segments = largestHatch(*d->session.state(), hatch);
    if (segments > sim::kMaxHatchSegments) {
        msgBox::show(LanguageManager::GetLanText("填充设置"),
                     LanguageManager::GetLanText("填充线段过多,未作更改") +
                         QStringLiteral(": %1 > %2").arg(segments).arg(sim::kMaxHatchSegments),
                     1);
    } else if (hatch.isTooFine()) {
        msgBox::show(LanguageManager::GetLanText("填充设置"),
                     LanguageManager::GetLanText("填充间距过小,未作更改") +
                         QStringLiteral(": < %1 mm").arg(sim::kLeastHatchPitch),
                     1);
    }
}

BasePoint QRulerView::GetBasePoint() const {
    return d->session.document().settings().basePoint;
}

void QRulerView::SetBasePoint(BasePoint point) {
    sim::DocumentSettings settings = d->session.document().settings();
    settings.basePoint = point;
    d->session.document().setSettings(settings);
}

double QRulerView::GetKeyMoveDist() const {
    return d->session.keyMoveDistance();
}

void QRulerView::SetKeyMoveDist(double dist) {
    sim::DocumentSettings settings = d->session.document().settings();
    settings.keyMoveDistance = dist;
    d->session.document().setSettings(settings);
}

int QRulerView::GetCurrentLayer() const {
    return d->session.currentPen();
}

void QRulerView::SetCurrentLayer(int layer) {
    d->canvas->cancelGesture();
    d->session.setCurrentPen(layer, true);
}

void QRulerView::SetCurrentLayerWithOutChangeLayer(int layer) {
    d->session.setCurrentPen(layer, false);
}

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/document/strokefonts.h"
#include "simengine/document/textmaker.h"
#include "simengine/document/textmessage.h"
#include "simengine/view/qrulerview_p.h"

#include <array>

namespace {

/// The object, or null with the reason.
sim::ObjectPtr madeRect(DrawnRect const& part, QString& fault) {
    sim::ObjectData data;
    data.shape = sim::RectShape{part.rect};
    data.pen = part.layer;
    for (int i = 0; i < qMin(kFillCount, part.fills.size()); ++i)
        data.hatch.fills[i] = part.fills[i];
    return sim::MarkObject::make(std::move(data), &fault);
}

sim::ObjectPtr madeText(DrawnText const& part, QString& fault) {
    sim::TextSpec spec;
    spec.text = part.text;
    spec.family = QLatin1String(sim::strokeFonts().front().name);
    spec.height = part.height;
    const sim::MadeText made = sim::makeText(spec);
    if (!made.ok()) {
        fault = sim::textMessage(made);
        return nullptr;
    }
    sim::ObjectData data;
    data.shape = made.shape;
    data.transform = QTransform::fromTranslate(part.place.x(), part.place.y());
    data.pen = part.layer;
    return sim::MarkObject::make(std::move(data), &fault);
}

void addUsed(sim::MarkObject const& object, std::array<bool, kLayerCount>& used) {
    if (auto const* group = std::get_if<sim::GroupShape>(&object.shape())) {
        for (sim::ObjectPtr const& child : group->children)
            addUsed(*child, used);
        return;
    }
    used[static_cast<std::size_t>(object.pen())] = true;
    for (FillParam const& fill : object.data().hatch.fills) {
        if (fill.Enable)
            used[static_cast<std::size_t>(fill.FillLayer)] = true;
    }
}

} // namespace

bool QRulerView::AddDrawing(QVector<DrawnRect> const& rects, QVector<DrawnText> const& texts) {
    QString fault;
    if (d->session.document().isReadOnly())
        fault = LanguageManager::GetLanText("文档只读");
    sim::ObjectList objects;
    for (int i = 0; i < rects.size() && fault.isEmpty(); ++i)
        objects.push_back(madeRect(rects[i], fault));
    for (int i = 0; i < texts.size() && fault.isEmpty(); ++i)
        objects.push_back(madeText(texts[i], fault));
    if (fault.isEmpty() && d->edit([&](sim::DocumentState const& state) { return sim::edits::add(state, objects); }))
        return true;
    MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("不能添加对象") + QLatin1Char(':') + fault);
    return false;
}

QList<int> QRulerView::GetUsedLayers() const {
    std::array<bool, kLayerCount> used{};
    for (sim::ObjectPtr const& object : *d->session.state()->objects)
        addUsed(*object, used);
    QList<int> layers;
    for (int i = 0; i < kLayerCount; ++i) {
        if (used[static_cast<std::size_t>(i)])
            layers.append(i);
    }
    return layers;
}

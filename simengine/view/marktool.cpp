// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/marktool.h"

#include "engine/marktoolbaseinfo.h"
#include "simengine/view/marktoolaccess.h"

IMarkToolBase::~IMarkToolBase() = default;

MarkToolBaseInfo::~MarkToolBaseInfo() = default;

namespace {

/// A place in a document's list. An index that the list does not reach any more answers like an empty object.
class DocumentTool : public IMarkToolBase {
public:
    DocumentTool(sim::Document& document, int index)
        : m_document(document)
        , m_index(index) {}

    sim::ObjectPtr object() const {
        const sim::StatePtr state = m_document.state();
        return m_index < state->count() ? state->at(m_index) : nullptr;
    }
    QString GetToolClassName() const override {
        const sim::ObjectPtr now = object();
        return now ? now->className() : QString();
    }
    void SetAngleChanged(bool changed) override {
        m_document.amend([=](const sim::DocumentState& state) -> sim::EditResult {
            if (m_index >= state.count())
                return std::nullopt;
            return sim::edits::setAngleChanged(state, m_index, changed);
        });
    }
    bool IsAngleChanged() const override {
        const sim::ObjectPtr now = object();
        return now && now->data().angleChanged;
    }
    bool IsOpenCurve() const override {
        const sim::ObjectPtr now = object();
        return now && now->isOpenCurve();
    }

private:
    sim::Document& m_document;
    int m_index;
};

} // namespace

struct MarkTool::Private {
    std::unique_ptr<IMarkToolBase> tool;
    DocumentTool* placed = nullptr; ///< the tool when it stands for a document's object
};

MarkTool::MarkTool(IMarkToolBase* tool)
    : d(std::make_unique<Private>()) {
    d->tool.reset(tool);
}

MarkTool::~MarkTool() = default;

IMarkToolBase* MarkTool::GetTool() const {
    return d->tool.get();
}

QVector<FillParam> MarkTool::GetFillParam(bool& edge, bool& fillFirst, bool& simple) const {
    const sim::ObjectPtr object = d->placed ? d->placed->object() : nullptr;
    const sim::HatchSettings hatch = object ? object->data().hatch : sim::HatchSettings();
    edge = hatch.enableEdge;
    fillFirst = hatch.markFillFirst;
    simple = hatch.showSimple;
    return hatch.fills;
}

std::unique_ptr<MarkTool> MarkToolAccess::make(sim::Document& document, int index) {
    auto placed = std::make_unique<DocumentTool>(document, index);
    DocumentTool* address = placed.get();
    auto tool = std::make_unique<MarkTool>(placed.release());
    tool->d->placed = address;
    return tool;
}

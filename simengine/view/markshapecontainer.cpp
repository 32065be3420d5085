// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/markshapecontainer.h"

#include "engine/marklog.h"
#include "engine/marktool.h"
#include "engine/systemparam.h"
#include "simengine/card/cardlink.h"
#include "simengine/card/statuswords.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/io/endsignal.h"
#include "simengine/servers/runrecord.h"
#include "simengine/view/marktoolaccess.h"

#include <mutex>

struct MarkShapeContainer::Private {
    explicit Private(sim::Document& owner)
        : document(owner) {}

    /// The tools stand for places in the list, not for objects: once handed out they stay, whatever is edited.
    MarkTool* toolAt(int index) {
        const std::lock_guard<std::mutex> lock(mutex);
        while (static_cast<int>(tools.size()) <= index)
            tools.push_back(MarkToolAccess::make(document, static_cast<int>(tools.size())));
        return tools[static_cast<std::size_t>(index)].get();
    }

    sim::Document& document;
    std::mutex mutex; ///< guards the two below
    std::vector<std::unique_ptr<MarkTool>> tools;
    QVector<CCDBufdata> offsets;
};

namespace {

/// Tells the plant that the job has ended; previews are no jobs to it.
void giveEndSignal(bool stopped) {
    const sim::EndSignalSettings settings = sim::currentEndSignal();
    switch (sim::cardEndSignal().runEnded(settings, stopped)) {
    case sim::EndSignalResult::NotReadBack:
        MarkLog::Instance()->ShowNote_Error(
            QStringLiteral("end signal: output %1 does not read back as written").arg(settings.output));
        break;
    case sim::EndSignalResult::NotAcknowledged:
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("end signal: no acknowledge at input %1 within %2 ms")
                                                .arg(settings.ackInput)
                                                .arg(settings.ackTimeout));
        break;
    case sim::EndSignalResult::NotGiven:
    case sim::EndSignalResult::Given:
        break;
    }
}

} // namespace

MarkShapeContainer::MarkShapeContainer() = default;

MarkShapeContainer::~MarkShapeContainer() = default;

std::unique_ptr<MarkShapeContainer> MarkShapeContainerAccess::make(sim::Document& document) {
    std::unique_ptr<MarkShapeContainer> container(new MarkShapeContainer());
    container->d = std::make_unique<MarkShapeContainer::Private>(document);
    return container;
}

bool MarkShapeContainer::StartMark(bool selectedOnly, bool loop, LayerParamEx* layers) {
    // First of all, so that a stop while the job is being built ends it.
    sim::CardRun run(selectedOnly, loop);
    if (!run.isAccepted())
        return sim::RunRecord::refused();
    sim::cardEndSignal().runBegins();
    sim::JobOptions options;
    options.selectedOnly = selectedOnly;
    options.invertX = SystemParam::Instance()->InvertX();
    options.invertY = SystemParam::Instance()->InvertY();
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        options.offsets = d->offsets;
    }
    QString fault;
    sim::Job job = sim::buildJob(*d->document.state(), options, &fault);
    if (!fault.isEmpty())
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("offset records: ") + fault);
    if (job.strokes.empty())
        return sim::RunRecord::refused();
    sim::RunRecord const record(job, layers);
    const bool laser = sim::simulatedCard().kind() == sim::MarkKind::Laser;
    if (!run.start(std::move(job)))
        return sim::RunRecord::refused();
    const bool succeeded = (sim::simulatedCard().markInfo() & sim::markinfo::kSuccess) != 0;
    record.ended(succeeded);
    if (laser)
        giveEndSignal(!succeeded);
    return true;
}

int MarkShapeContainer::GetSelectedToolCnt() const {
    return d->document.state()->selection.count();
}

QList<int> MarkShapeContainer::GetSelectedIndex() const {
    return d->document.state()->selection.ascending();
}

int MarkShapeContainer::GetFirstSelectedIndex() const {
    return d->document.state()->selection.first();
}

int MarkShapeContainer::GetBaseSelectedIndex() const {
    return d->document.state()->selection.base();
}

QVector<MarkTool*> MarkShapeContainer::GetMarkTools() const {
    QVector<MarkTool*> all;
    const int count = d->document.state()->count();
    all.reserve(count);
    for (int i = 0; i < count; ++i)
        all.append(d->toolAt(i));
    return all;
}

MarkTool* MarkShapeContainer::operator[](int index) const {
    return index >= 0 && index < d->document.state()->count() ? d->toolAt(index) : nullptr;
}

void MarkShapeContainer::AddCCDBuf(CCDBufdata const& data) {
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->offsets.append(data);
}

void MarkShapeContainer::ClearCCDBuf() {
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->offsets.clear();
}

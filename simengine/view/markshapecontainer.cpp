// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/markshapecontainer.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/marktool.h"
#include "engine/systemparam.h"
#include "simengine/card/cardlink.h"
#include "simengine/document/contained.h"
#include "simengine/document/runplan.h"
#include "simengine/log/runtimes.h"
#include "simengine/servers/runrecord.h"
#include "simengine/view/marktoolaccess.h"
#include "simengine/view/variablepass.h"

#include <chrono>
#include <mutex>

struct MarkShapeContainer::Private {
    Private(sim::Document& owner, JobListener told)
        : document(owner)
        , listener(std::move(told)) {}

    /// The tools stand for places in the list, not for objects: once handed out they stay, whatever is edited.
    MarkTool* toolAt(int index) {
        const std::lock_guard<std::mutex> lock(mutex);
        while (static_cast<int>(tools.size()) <= index)
            tools.push_back(MarkToolAccess::make(document, static_cast<int>(tools.size())));
        return tools[static_cast<std::size_t>(index)].get();
    }

    sim::JobOptions options(bool selectedOnly) {
        const std::lock_guard<std::mutex> lock(mutex);
        return sim::currentOptions(selectedOnly, offsets);
    }

    /// StartMark() but for what it throws.
    bool mark(bool selectedOnly, bool loop, LayerParamEx* layers);

    sim::Document& document;
    JobListener const listener;
    std::mutex mutex; ///< guards the two below
    std::vector<std::unique_ptr<MarkTool>> tools;
    QVector<CCDBufdata> offsets;
};

namespace {

/// Tells the plant that the job has ended; previews are no jobs to it.
void giveEndSignal(const sim::RunResult& result) {
    const sim::EndSignalSettings settings = sim::currentEndSignal();
    switch (sim::cardEndSignal().runEnded(settings, result)) {
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

/// A moment by both clocks: the day's may be set meanwhile.
struct Moment {
    QDateTime day = QDateTime::currentDateTimeUtc();
    std::chrono::steady_clock::time_point clock = std::chrono::steady_clock::now();
};

/// Puts the estimate and the time of a laser run side by side.
void keepTime(const sim::RunPlan& plan, const QString& document, const Moment& begin, double cardMs, bool whole) {
    sim::EndedRun run{sim::runTimesPath(), plan, {}};
    run.time.document = document;
    run.time.when = begin.day;
    run.time.actualMs = cardMs;
    run.time.wallMs = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin.clock).count();
    run.time.whole = whole;
    run.time.selectedOnly = plan.options.selectedOnly;
    sim::RunTimes::instance().add(std::move(run));
}

} // namespace

namespace {

/// A job on the card, told to who listens.
class ToldJob {
public:
    ToldJob(JobListener const& listener, sim::MarkKind kind)
        : m_listener(listener) {
        m_listener.begins(sim::simulatedCard().trace().pass(), kind);
    }
    ~ToldJob() { m_listener.ended(); }
    ToldJob(ToldJob const&) = delete;
    ToldJob& operator=(ToldJob const&) = delete;

private:
    JobListener const& m_listener;
};

/// The operator is told what is wrong, nothing is marked.
bool refuse(QString const& text) {
    MarkLog::Instance()->ShowNote_Error(text);
    sim::showCardMessage(text, 1);
    return sim::RunRecord::refused();
}

sim::RunResult runTold(sim::CardRun& run, sim::Job job, JobListener const& listener) {
    const ToldJob told(listener, run.kind());
    return run.start(std::move(job));
}

} // namespace

bool MarkShapeContainer::Private::mark(bool selectedOnly, bool loop, LayerParamEx* layers) {
    // First of all, so that a stop while the job is being built ends it.
    sim::CardRun run(selectedOnly, loop);
    if (!run.isAccepted())
        return sim::RunRecord::refused();
    const Moment begin;
    sim::cardEndSignal().runBegins();
    const bool laser = run.kind() == sim::MarkKind::Laser;
    sim::VariablePass variables(document.state(), selectedOnly, laser);
    if (!variables.problem().ok())
        return refuse(sim::variableMessage(variables.problem()));
    const sim::RunPlan plan = sim::currentPlan(variables.state(), options(selectedOnly), sim::simulatedCard().pens());
    QString fault;
    sim::Job job = sim::buildJob(*plan.state, plan.options, &fault);
    if (!fault.isEmpty())
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("offset records: ") + fault);
    if (job.strokes.empty())
        return sim::RunRecord::refused();
    sim::RunRecord const record(job, layers);
    if (!variables.begin())
        return refuse(sim::variableMessage(variables.problem()));
    if (loop && variables.counts() && SystemParam::Instance()->UsedBufLoop())
        MarkLog::Instance()->ShowNode(NoteRun, LanguageManager::GetLanText("缓存循环时变量不变"));
    const sim::RunResult result = runTold(run, std::move(job), listener);
    if (!result)
        return sim::RunRecord::refused();
    const bool succeeded = result.outcome == sim::Outcome::Done;
    record.ended(succeeded);
    // of a job that repeats itself a pass was marked to its end although the job was stopped
    variables.end(result.time.passes > 0);
    if (!laser)
        return true;
    giveEndSignal(result);
    QString unkept;
    if (!sim::contained(unkept, [&] { keepTime(plan, document.fileName(), begin, result.time.totalMs, succeeded); }))
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("run times: ") + unkept);
    return true;
}

MarkShapeContainer::MarkShapeContainer() = default;

MarkShapeContainer::~MarkShapeContainer() = default;

sim::JobOptions MarkShapeContainerAccess::options(MarkShapeContainer& container, bool selectedOnly) {
    return container.d->options(selectedOnly);
}

std::unique_ptr<MarkShapeContainer> MarkShapeContainerAccess::make(sim::Document& document, JobListener listener) {
    std::unique_ptr<MarkShapeContainer> container(new MarkShapeContainer());
    container->d = std::make_unique<MarkShapeContainer::Private>(document, std::move(listener));
    return container;
}

bool MarkShapeContainer::StartMark(bool selectedOnly, bool loop, LayerParamEx* layers) {
    // The thread of the run is the caller's; what the drawing needs too much memory for must not end it.
    QString fault;
    bool marked = false;
    if (sim::contained(fault, [&] { marked = d->mark(selectedOnly, loop, layers); }))
        return marked;
    return refuse(fault);
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

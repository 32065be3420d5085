// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/rundatagather.h"

#include "simengine/servers/rundatagatheraccess.h"

#include <mutex>

struct RunDataGather::Private {
    mutable std::mutex lock;
    QDateTime openTime;
    QString document;
    RunStatus status = RunStatusNormal;
    bool result = false;
    qint64 timeMs = 0;
    QVector<LayerData> layers;
};

RunDataGather::RunDataGather()
    : d(std::make_unique<Private>()) {}

RunDataGather::~RunDataGather() = default;

RunDataGather* RunDataGather::Instance() {
    static RunDataGather instance;
    return &instance;
}

void RunDataGather::SetOpenTimeStamp(QDateTime const& time) {
    std::lock_guard<std::mutex> guard(d->lock);
    d->openTime = time;
}

QDateTime RunDataGather::GetOpenTimeStamp() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->openTime;
}

void RunDataGather::SetCurDocName(QString const& name) {
    std::lock_guard<std::mutex> guard(d->lock);
    d->document = name;
}

QString RunDataGather::GetCurDocName() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->document;
}

void RunDataGather::SetRunStatus(RunStatus status) {
    std::lock_guard<std::mutex> guard(d->lock);
    d->status = status;
}

RunStatus RunDataGather::GetRunStatus() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->status;
}

bool RunDataGather::GetRunResult() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->result;
}

qint64 RunDataGather::GetRunTime() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->timeMs;
}

QVector<LayerData> RunDataGather::GetLayerList() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->layers;
}

void RunDataGatherAccess::setRun(bool result, qint64 timeMs, QVector<LayerData> const& layers) {
    RunDataGather::Private& data = *RunDataGather::Instance()->d;
    std::lock_guard<std::mutex> guard(data.lock);
    data.result = result;
    data.timeMs = timeMs;
    data.layers = layers;
}

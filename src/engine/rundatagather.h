// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/layerdata.h"
#include "engine/marktypes.h"

#include <QDateTime>
#include <QString>
#include <QVector>
#include <memory>

/// Figures of the last run for controlling stations. Any thread.
class ENGINE_API RunDataGather {
public:
    static RunDataGather* Instance();
    void SetOpenTimeStamp(QDateTime const& time);
    QDateTime GetOpenTimeStamp() const;
    void SetCurDocName(QString const& name);
    QString GetCurDocName() const;
    void SetRunStatus(RunStatus status);
    RunStatus GetRunStatus() const;
    /// The last run ended without being stopped.
    bool GetRunResult() const;
    /// Time of the last run, ms.
    qint64 GetRunTime() const;
    /// The pens that the last run marked with, in order of use.
    QVector<LayerData> GetLayerList() const;

private:
    RunDataGather();
    ~RunDataGather();
    friend struct RunDataGatherAccess;
    struct Private;
    std::unique_ptr<Private> d;
};

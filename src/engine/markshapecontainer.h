// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccdbufdata.h"
#include "engine/engineapi.h"
#include "engine/layerparamex.h"

#include <QList>
#include <QVector>
#include <memory>

class MarkTool;

/// The objects of a document as a run sees them. StartMark and the buffer operations may be called on worker threads
/// while the main thread edits; a run marks the objects as they were when it began.
class ENGINE_API MarkShapeContainer {
public:
    ~MarkShapeContainer();

    /// Runs the job on the calling thread and returns when it has ended: true when something was run, stopped or not;
    /// false when nothing could be run (nothing to mark, card closed). Obeys IMarkCardBase::SetMarkStaus. With
    /// SystemParam::UsedBufLoop() and `loop` the card repeats by itself and the call returns only after a stop.
    /// The card marks with the pens that DownLayerPara gave it last; `layers` tells the run's record which they were.
    bool StartMark(bool selectedOnly, bool loop, LayerParamEx* layers);

    int GetSelectedToolCnt() const;
    QList<int> GetSelectedIndex() const;
    /// -1 when nothing is selected.
    int GetFirstSelectedIndex() const;
    /// Index of the object that alignment refers to, -1 when there is none.
    int GetBaseSelectedIndex() const;
    QVector<MarkTool*> GetMarkTools() const;
    /// Null outside the list.
    MarkTool* operator[](int index) const;

    /// Appends an offset record; every following run marks the job once for each record until they are cleared.
    void AddCCDBuf(CCDBufdata const& data);
    void ClearCCDBuf();

private:
    MarkShapeContainer();
    friend struct MarkShapeContainerAccess;
    struct Private;
    std::unique_ptr<Private> d;
};

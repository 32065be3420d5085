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

    /// Appends an offset record. Every following run, of whatever kind, marks what it marks once for each valid record,
    /// in their order: turned by the record's angle, counter-clockwise about the field centre, and then shifted by its
    /// dx and dy. An empty buffer means once, as drawn. The records stay until ClearCCDBuf; those that come while a run
    /// goes on are for the next one. A point that they move out of the field is treated as one that is drawn there.
    /// StartMark is false when no record is valid, when a number of a valid record is not finite, or when the records
    /// repeat more than the engine can hold.
    void AddCCDBuf(CCDBufdata const& data);
    void ClearCCDBuf();

private:
    MarkShapeContainer();
    friend struct MarkShapeContainerAccess;
    struct Private;
    std::unique_ptr<Private> d;
};

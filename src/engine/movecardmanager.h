// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/imovecardbase.h"

#include <memory>

/// Access to the axes, numbered from 0. Every operation may be called from any thread; off the main thread it goes by
/// the parameters that Class_CardPara held at the last operation on the main thread. With the motion card closed it
/// does nothing, gives false and leaves the values that it should fill as they are. Positions in the axis's unit (mm or
/// degrees), speeds in unit/s, accelerations in unit/s^2.
class ENGINE_API MoveCardManager {
public:
    static MoveCardManager* Instance();

    /// Takes ownership of the motion card object.
    void SetMoveCardInstance(IMoveCardBase* card);
    /// Decodes the state words of AxisGetInfo. Null before the shell has set one.
    IMoveCardBase* GetMoveCardInstance() const;
    /// Opens the motion card; its success is told by IsCardOpened().
    void InitMoveCard();
    void CloseMoveCard();
    bool IsCardOpened() const;
    /// Motion is switched on in the parameters.
    bool IsEnableMoveCard() const;

    /// Starts a move to the absolute position `pos`; false when the axis does not exist or is not free.
    bool AxisMove2(int axis, double pos, double speed, double acc);
    /// Starts a jog in the direction of the sign of `signedSpeed`; it runs until it is stopped or meets a limit.
    bool AxisMove2Jog(int axis, double signedSpeed, double acc);
    /// Gives the position counted since it was last set: by a homing, by SetCurPos, or at the opening of the motion
    /// card.
    bool AxisGetAltPos(int axis, double& pos) const;
    /// Gives position and state word, which IMoveCardBase decodes.
    bool AxisGetInfo(int axis, double& pos, int& state) const;
    /// Puts the axis back into point-to-point mode after a jog.
    bool AxisChangeToT(int axis);
    /// Declares the present place of the axis to be `pos`.
    bool SetCurPos(int axis, double pos);
    /// Blocks until the axis stands still, or returns at once when it does not exist.
    void WaiAxisStop(int axis);
    /// Stops all axes with their acceleration.
    void StopAll();

private:
    MoveCardManager();
    ~MoveCardManager();
    struct Private;
    std::unique_ptr<Private> d;
};

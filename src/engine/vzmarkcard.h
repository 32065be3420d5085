// SPDX-License-Identifier: MIT
#pragma once

#include "engine/imarkcardbase.h"

/// The marking card that the linked engine drives. The shell creates one and registers it in MarkCardInstance before
/// anything else is called on it.
class ENGINE_API VZMarkCard : public IMarkCardBase {
public:
    VZMarkCard();
    ~VZMarkCard() override;

    void BeginList(int mode) override;
    void EndList() override;
    void StopMark() override;
    void PauseMark() override;
    void RestartMark() override;
    void ResetCardFlash() override;
    double GetBufferRunTime() override;
    int GetAlarmTime() override;
    void SetAlarmTime(int ms) override;
    void CardCommand(int code, int a, int b, int* out1, int* out2) override;
};

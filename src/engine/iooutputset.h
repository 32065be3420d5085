// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/imarkcardbase.h"

#include <QString>
#include <atomic>
#include <memory>

/// The named outputs: stack light, ready, end signal, red light, protective gas. An output number of -1 means that the
/// output is not fitted. Lamp and switch operations may be called from any thread; setters and Save() on the main
/// thread.
class ENGINE_API IOOutputSet {
public:
    static IOOutputSet* Instance();
    /// False when the file could not be written.
    bool Save();

    // Stack light: each writes the configured lamp outputs of the card.
    void SetGreen(IMarkCardBase* card);
    void SetYellow(IMarkCardBase* card);
    void SetRed(IMarkCardBase* card);
    void SetGreenYellow(IMarkCardBase* card);
    /// Output numbers of red, green, yellow and buzzer.
    void GetLight(int& red, int& green, int& yellow, int& buzzer) const;
    void SetLight(int red, int green, int yellow, int buzzer);
    /// State last written; also true without fitted lamps.
    void GetLightStatus(bool& red, bool& green, bool& yellow) const;

    int GetReadyOut() const;
    void SetReadyOut(int bit);
    bool EnableReadyOut() const;
    void SetEnableReadyOut(bool enable);
    /// A lamp is lit by the level 0.
    bool IsOutputInv() const;
    void SetOutputInv(bool invert);

    void GetRedLight(int& bit, QString& name) const;
    void SetRedLight(int& bit, QString const& name);
    void SetRedLight(IMarkCardBase* card, bool on);
    bool RedLightEnabled(IMarkCardBase* card) const;

    /// `delay` in ms
    void GetProtectGas(int& bit, double& delay, QString& name) const;
    void SetProtectGas(int& bit, double& delay, QString const& name);
    void SetProtectGas(IMarkCardBase* card, bool on);
    bool ProtectGasEnabled(IMarkCardBase* card) const;

    /// End signal, which the engine gives when MarkShapeContainer::StartMark ends a normal job: `clearType` 0 blocks
    /// for `duration` ms, 1 clears at the next run, 2 waits for the acknowledge input for up to `ackTimeout` ms, 3
    /// clears after `duration` ms without blocking; `selfCheck` reads the signal back.
    void GetEndSignal(bool& enable, int& output, int& level, int& clearType, int& duration, int& ackInput,
                      int& ackLevel, int& ackTimeout, bool& selfCheck) const;
    void SetEndSignal(bool enable, int output, int level, int clearType, int duration, int ackInput, int ackLevel,
                      int ackTimeout, bool selfCheck);
    std::atomic<bool> m_bStopHasEndSig{false}; ///< a stopped run gives the end signal too; persisted by Save()

private:
    IOOutputSet();
    ~IOOutputSet();
    struct Private;
    std::unique_ptr<Private> d;
};

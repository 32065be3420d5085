// SPDX-License-Identifier: MIT
#pragma once

#include "laser/laserport.h"

#include <memory>

class LaserSplash;

namespace tessera {

/// The lines of the machine's card, real time, and a splash on the screen that tells what is waited for. Main thread.
class MachineLaserPort : public LaserPort {
public:
    MachineLaserPort();
    ~MachineLaserPort() override;

    // Without a card object nothing is open or driven, and inputs are 0.
    bool IsOpen() override;
    void SetOutput(int line, int value) override;
    int Input(int line) override;
    void Wait(int ms) override;
    /// The splash goes away for as long as the notice is up.
    void Notice(char const* text) override;
    void SequenceBegins(char const* title) override;
    void WaitBegins(LaserWait const& wait) override;
    void SequenceEnds() override;

private:
    std::unique_ptr<LaserSplash> m_Splash; ///< only while a sequence that is shown runs
};

} // namespace tessera

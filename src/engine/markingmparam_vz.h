// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/marktypes.h"

#include <memory>

/// Laser type of the machine. Getters from any thread, setters and SaveParaData() on the main thread.
class ENGINE_API MarkingMParam_VZ {
public:
    static MarkingMParam_VZ* Instance();
    MarkCardType GetMarkCardType() const;
    void SetMarkCardType(MarkCardType type);
    /// The type is taken from the card's hardware word.
    bool IsAutoSetCardType() const;
    void SetAutoSetCardType(bool automatic);
    FilberLaserType GetIPG100WType() const;
    void SetIPG100WType(FilberLaserType type);
    /// False when the file could not be written.
    bool SaveParaData();

private:
    MarkingMParam_VZ();
    ~MarkingMParam_VZ();
    struct Private;
    std::unique_ptr<Private> d;
};

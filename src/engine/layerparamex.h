// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"
#include "engine/lyqcwwave.h"
#include "engine/marktypes.h"

#include <QColor>
#include <QVector>

/// The pen table of a document: exactly 20 records, and the 16 stored waveforms of the serial laser.
/// A value that can be copied. One object may be read by a run while the main thread edits another copy; one and the
/// same object is not to be edited during a run's DownLayerPara. An index outside 0 to 19 is a caller's error; it is
/// answered with the default record and changes nothing.
class ENGINE_API LayerParamEx {
public:
    LayerParamEx();
    /// A copy shares nothing with `other`, not even through record addresses that were handed out.
    LayerParamEx(LayerParamEx const& other);
    /// Record addresses that were handed out stay good and give the new values.
    LayerParamEx& operator=(LayerParamEx const& other);

    /// Copies record `index` out.
    void GetLayerData(int index, LayerData& data) const;
    /// Gives the address of record `index`, null for an index outside the table.
    void GetLayerData(int index, LayerData*& data);
    /// The whole table, always 20 records.
    QVector<LayerData>& GetLayerData();
    QVector<LayerData> const& GetLayerData() const;
    void SetLayerData(int index, LayerData const& data);

    /// Address of the 16 stored waveforms.
    LYQCWWave* GetQCWWaves();
    LYQCWWave const* GetQCWWaves() const;

    /// Display colour that pen `index` has in a new document; an invalid colour outside 0 to 19.
    static QColor GetDefultColor(int index);

private:
    QVector<LayerData> m_Layers;
    std::array<LYQCWWave, kQcwWaveCount> m_Waves{};
};

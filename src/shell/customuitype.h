// SPDX-License-Identifier: MIT
#pragma once

namespace tessera {

/// Values of SystemParam::m_nCustomUIType.
constexpr int kCustomUINone = 0;
/// The custom window takes the whole main window.
constexpr int kCustomUIWhole = 1;
/// It is a further tab beside the documents.
constexpr int kCustomUITab = 2;

} // namespace tessera

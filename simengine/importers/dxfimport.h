// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

#include <QByteArray>

namespace sim {

/// Imports a DXF drawing in text form, of any version. Main thread when texts need an outline font.
///
/// The unit is that of $INSUNITS, else that of $MEASUREMENT, else the millimetre. What has the colour of its layer is
/// on the layer's pen, what has a colour of its own on that colour's; both are numbered as they are met. Lines that
/// meet end to end in the file's order are one polyline. What is left out or changed is told in the result.
ImportResult importDxf(const QString& path, const ImportOptions& options = {});
ImportResult importDxfData(const QByteArray& bytes, const ImportOptions& options = {});

} // namespace sim

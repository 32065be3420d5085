// SPDX-License-Identifier: MIT
// Files with the suffix .dxf through their importer, as bytes from anywhere.
#include "importcheck.h"
#include "simengine/importers/dxfimport.h"

#include <QByteArray>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::checkImport(sim::importDxfData(QByteArray(reinterpret_cast<char const*>(data), int(size))));
    return 0;
}

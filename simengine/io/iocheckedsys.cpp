// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/iocheckedsys.h"

#include "simengine/io/iofunctable.h"
#include "support/approot.h"

#include <vector>

struct IOCheckedSys::Private {
    sim::IniFile file{tessera::rootPath(QLatin1String(sim::kIOFunctionFile))};
    /// Never resized but by SetIOFunctions, so that the addresses given out stay good until then. A QVector would hand
    /// its buffer to the copies made by GetIOFunctions and move on the next write.
    std::vector<IOFuncList> functions;
};

IOCheckedSys::IOCheckedSys()
    : d(std::make_unique<Private>()) {
    QVector<IOFuncList> functions = sim::defaultIOFunctions();
    sim::loadIOFunctions(functions, d->file);
    d->functions.assign(functions.cbegin(), functions.cend());
}

IOCheckedSys::~IOCheckedSys() = default;

IOCheckedSys* IOCheckedSys::Instance() {
    static IOCheckedSys instance;
    return &instance;
}

IOFuncList* IOCheckedSys::GetFunObject(QString const& name) {
    for (IOFuncList& function : d->functions) {
        if (function.Name == name)
            return &function;
    }
    return nullptr;
}

QVector<IOFuncList> IOCheckedSys::GetIOFunctions() const {
    QVector<IOFuncList> functions;
    functions.reserve(static_cast<int>(d->functions.size()));
    for (IOFuncList const& function : d->functions)
        functions.append(function);
    return functions;
}

void IOCheckedSys::SetIOFunctions(QVector<IOFuncList> const& functions) {
    d->functions.assign(functions.cbegin(), functions.cend());
}

bool IOCheckedSys::SaveFile() {
    QVector<IOFuncList> const functions = GetIOFunctions();
    return d->file.change(
        [&functions](sim::IniDocument& document) { return sim::storeIOFunctions(functions, document); });
}

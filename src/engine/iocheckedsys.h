// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/iofunclist.h"

#include <QString>
#include <QVector>
#include <memory>

/// The table of named input/output functions. Main thread.
class ENGINE_API IOCheckedSys {
public:
    static IOCheckedSys* Instance();
    /// Address of the record, null for an unknown name. The caller may keep and write through it until the next
    /// SetIOFunctions.
    IOFuncList* GetFunObject(QString const& name);
    QVector<IOFuncList> GetIOFunctions() const;
    void SetIOFunctions(QVector<IOFuncList> const& functions);
    /// False when the file could not be written.
    bool SaveFile();

private:
    IOCheckedSys();
    ~IOCheckedSys();
    struct Private;
    std::unique_ptr<Private> d;
};

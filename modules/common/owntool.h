// SPDX-License-Identifier: MIT
#pragma once

#include "engine/imarktoolbase.h"

namespace toolmodules {

/// Asks for an object of one of the engine's own classes: the engine draws it itself.
class OwnTool : public IMarkToolBase {
public:
    OwnTool(QString className, bool open)
        : m_class(std::move(className))
        , m_open(open) {}
    QString GetToolClassName() const override { return m_class; }
    void SetAngleChanged(bool changed) override { m_angleChanged = changed; }
    bool IsAngleChanged() const override { return m_angleChanged; }
    bool IsOpenCurve() const override { return m_open; }

private:
    QString m_class;
    bool m_open;
    bool m_angleChanged = false;
};

} // namespace toolmodules

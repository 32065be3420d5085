// SPDX-License-Identifier: MIT
#pragma once

#include "engine/igeneratedtool.h"
#include "engine/imarktoolbase.h"

#include <vector>

namespace toolmodules {

/// A parameter, and the name under which documents keep it: letters, stays for ever.
struct Number {
    const char* key;
    ToolParameter shown;
};

ToolParameter real(const char* name, const char* unit, double least, double most, double preset, int decimals = 3);
ToolParameter whole(const char* name, int least, int most, int preset);
ToolParameter toggle(const char* name, bool preset);
ToolParameter choice(const char* name, const QStringList& choices, int preset);

/// What tools of numbers have in common. Parameters are kept as lines "key=value" below the tool's class name: keys
/// that a later version does not know are passed over, and numbers that an older one did not write have their preset.
class NumberTool : public IMarkToolBase, public IGeneratedTool {
public:
    NumberTool(const char* className, std::vector<Number> numbers, bool open);

    QString GetToolClassName() const override { return m_class; }
    void SetAngleChanged(bool changed) override { m_angleChanged = changed; }
    bool IsAngleChanged() const override { return m_angleChanged; }
    bool IsOpenCurve() const override { return m_open; }

    QVector<ToolParameter> GetParameters() const override;
    QByteArray WriteParameters(QVector<double> const& values) const override;
    bool ReadParameters(QByteArray const& bytes, QVector<double>& values) const override;

private:
    int indexOf(const QByteArray& key) const;

    QString m_class;
    std::vector<Number> m_numbers;
    bool m_open;
    bool m_angleChanged = false;
};

} // namespace toolmodules

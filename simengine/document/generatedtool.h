// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/igeneratedtool.h"
#include "engine/imarktoolbase.h"
#include "simengine/document/shape.h"

#include <memory>
#include <optional>

namespace sim {

/// A module's tool that makes objects of numbers, with all that it gives looked at before it is used: tables, values
/// and outlines that are not sound are refused, and so is what it throws. What is wrong goes to the log, the same fault
/// once. Main thread.
class GeneratedTool {
public:
    /// The tool that makes objects of this class; null when no module has it, when it makes no objects of numbers, and
    /// when its table is not sound.
    static std::shared_ptr<GeneratedTool> ofClass(const QString& className);

    const QString& className() const { return m_class; }
    const QVector<ToolParameter>& parameters() const { return m_parameters; }
    QVector<double> presets() const;
    /// Each value brought into its range; presets in place of what is missing or no number.
    QVector<double> sound(const QVector<double>& values) const;
    /// The values that the bytes stand for; nothing when the tool does not know them.
    std::optional<QVector<double>> read(const QByteArray& bytes) const;
    /// The object of the values; nothing, and why in `fault`, when the tool gives no sound one.
    std::optional<GeneratedShape> make(const QVector<double>& values, QString* fault = nullptr) const;
    /// The values with what follows from a drag of the operator, mm.
    QVector<double> placed(const QVector<double>& values, const QPointF& drag) const;

private:
    GeneratedTool(QString className, std::unique_ptr<IMarkToolBase> tool, const IGeneratedTool* maker);
    bool takeTable();
    void note(const QString& fault) const;

    QString m_class;
    std::unique_ptr<IMarkToolBase> m_tool;
    const IGeneratedTool* m_maker;
    QVector<ToolParameter> m_parameters;
    mutable QStringList m_told; ///< faults that are in the log
};

} // namespace sim

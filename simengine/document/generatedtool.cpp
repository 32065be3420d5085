// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/generatedtool.h"

#include "simengine/document/guardedmodule.h"
#include "simengine/document/limits.h"
#include "simengine/document/moduleguard.h"

#include <cmath>

namespace sim {

namespace {

constexpr int kMostParameters = 64;
constexpr int kMostDecimals = 6;
constexpr int kMostToldFaults = 20;

bool isSound(const ToolParameter& p) {
    const bool numbers = std::isfinite(p.least) && std::isfinite(p.most) && std::isfinite(p.preset);
    const bool known = p.kind >= ToolParameter::Real && p.kind <= ToolParameter::Choice;
    return known && numbers && p.least <= p.most && p.decimals >= 0 && p.decimals <= kMostDecimals &&
           p.name.size() <= kMaxNameLength && (p.kind != ToolParameter::Choice || !p.choices.isEmpty());
}

/// Switches and choices have the range that their kind gives them.
ToolParameter ranged(ToolParameter p) {
    if (p.kind == ToolParameter::Switch || p.kind == ToolParameter::Choice) {
        p.least = 0.0;
        p.most = p.kind == ToolParameter::Switch ? 1.0 : p.choices.size() - 1.0;
    }
    p.preset = qBound(p.least, p.preset, p.most);
    return p;
}

double soundValue(const ToolParameter& p, double value) {
    if (!std::isfinite(value))
        return p.preset;
    const double whole = p.kind == ToolParameter::Real ? value : std::round(value);
    return qBound(p.least, whole, p.most);
}

/// The contours as a path, cut off as soon as there are more points than an object may have.
PathShape pathOf(const QVector<ToolContour>& contours) {
    PathShape path;
    for (const ToolContour& contour : contours) {
        path.moveTo(contour.start);
        for (const ToolSegment& segment : contour.segments) {
            if (path.points.size() > kMaxGeneratedPoints)
                return path;
            if (segment.curved)
                path.cubicTo(segment.handle1, segment.handle2, segment.end);
            else
                path.lineTo(segment.end);
        }
        if (contour.closed)
            path.close();
    }
    return path;
}

} // namespace

GeneratedTool::GeneratedTool(QString className, std::unique_ptr<IMarkToolBase> tool, const IGeneratedTool* maker)
    : m_class(std::move(className))
    , m_tool(std::move(tool))
    , m_maker(maker) {}

std::shared_ptr<GeneratedTool> GeneratedTool::ofClass(const QString& className) {
    std::unique_ptr<IMarkToolBase> tool = makeModuleTool(className);
    const auto* maker = dynamic_cast<const IGeneratedTool*>(unguarded(tool.get()));
    if (!maker)
        return nullptr;
    const std::shared_ptr<GeneratedTool> made(new GeneratedTool(className, std::move(tool), maker));
    return made->takeTable() ? made : nullptr;
}

bool GeneratedTool::takeTable() {
    QString className;
    QVector<ToolParameter> table;
    const bool told = guarded(m_class, [&] {
        className = m_tool->GetToolClassName();
        table = m_maker->GetParameters();
    });
    if (!told)
        return false;
    const bool sized = !table.isEmpty() && table.size() <= kMostParameters;
    if (className != m_class || isOwnClass(m_class)) {
        note(QStringLiteral("makes objects of the class %1").arg(className));
        return false;
    }
    if (!sized || !std::all_of(table.begin(), table.end(), isSound)) {
        note(QStringLiteral("the table of parameters is not usable"));
        return false;
    }
    for (const ToolParameter& parameter : qAsConst(table))
        m_parameters.append(ranged(parameter));
    return true;
}

// Dragging asks the tool many times a second.
void GeneratedTool::note(const QString& fault) const {
    if (m_told.contains(fault) || m_told.size() >= kMostToldFaults)
        return;
    m_told.append(fault);
    noteModuleFault(m_class, fault);
}

QVector<double> GeneratedTool::presets() const {
    return sound({});
}

QVector<double> GeneratedTool::sound(const QVector<double>& values) const {
    QVector<double> result;
    for (int i = 0; i < m_parameters.size(); ++i) {
        const ToolParameter& parameter = m_parameters.at(i);
        result.append(soundValue(parameter, i < values.size() ? values.at(i) : parameter.preset));
    }
    return result;
}

std::optional<QVector<double>> GeneratedTool::read(const QByteArray& bytes) const {
    QVector<double> values = presets();
    bool known = false;
    const bool done = guarded(m_class, [&] { known = m_maker->ReadParameters(bytes, values); });
    if (!done || !known || values.size() != m_parameters.size())
        return std::nullopt;
    return sound(values);
}

std::optional<GeneratedShape> GeneratedTool::make(const QVector<double>& values, QString* fault) const {
    const QVector<double> used = sound(values);
    GeneratedShape shape;
    shape.toolClass = m_class;
    QString reason = thrownBy([&] {
        shape.outline = pathOf(m_maker->MakeOutline(used));
        if (!shape.outline.verbs.isEmpty())
            shape.parameters = m_maker->WriteParameters(used);
    });
    const bool fits = !shape.outline.verbs.isEmpty(); // no outline is the tool's answer to values that do not fit
    if (reason.isEmpty() && fits) {
        if (const char* unsound = shapeFault(shape))
            reason = QString::fromLatin1(unsound);
    }
    if (!reason.isEmpty())
        note(reason);
    if (fault)
        *fault = reason;
    if (!reason.isEmpty() || !fits)
        return std::nullopt;
    return shape;
}

QVector<double> GeneratedTool::placed(const QVector<double>& values, const QPointF& drag) const {
    const QVector<double> before = sound(values);
    QVector<double> after = before;
    if (!guarded(m_class, [&] { m_maker->Place(drag, after); }) || after.size() != before.size())
        return before;
    return sound(after);
}

} // namespace sim

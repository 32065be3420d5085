// SPDX-License-Identifier: MIT
// A module whose tools fail in every way that a program outlives.
#include "engine/externmodules.h"
#include "engine/igeneratedtool.h"

#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

const char* const kClasses[] = {
    "GoodSquare",      "ThrowsTable",   "NoTable",       "LongTable",   "NanTable",     "SwappedTable", "EmptyChoice",
    "ThrowsOutline",   "ThrowsNumber",  "NanOutline",    "FarOutline",  "ManyPoints",   "ManyStrokes",  "NoOutline",
    "ThrowsWrite",     "LongWrite",     "ThrowsRead",    "WrongRead",   "ShortRead",    "NanRead",      "ThrowsPlace",
    "ShortPlace",      "NanPlace",      "OtherClass",    "ThrowsClass", "ThrowsCreate", "NullCreate",   "NoGeometry",
    "MarkToolCombine", "LiteralSquare", "SilentOutline", "SilentWrite"};

class BadTool : public IMarkToolBase, public IGeneratedTool {
public:
    explicit BadTool(QString name)
        : m_name(std::move(name)) {}
    QString GetToolClassName() const override {
        if (is("ThrowsClass"))
            throw std::runtime_error("class");
        if (is("LiteralSquare"))
            return QStringLiteral("LiteralSquare");
        return is("OtherClass") ? QStringLiteral("SomethingElse") : m_name;
    }
    void SetAngleChanged(bool) override {}
    bool IsAngleChanged() const override { return false; }
    bool IsOpenCurve() const override { return false; }

    QVector<ToolParameter> GetParameters() const override {
        if (is("ThrowsTable"))
            throw std::runtime_error("table");
        if (is("NoTable"))
            return {};
        ToolParameter side;
        side.name = QStringLiteral("Side");
        side.unit = QStringLiteral("mm");
        side.least = is("SwappedTable") ? 100.0 : 1.0;
        side.most = is("SwappedTable") ? 1.0 : 100.0;
        side.preset = is("NanTable") ? kNan : 10.0;
        if (is("EmptyChoice"))
            side.kind = ToolParameter::Choice;
        return QVector<ToolParameter>(is("LongTable") ? 65 : 1, side);
    }
    QByteArray WriteParameters(QVector<double> const& values) const override {
        if (is("ThrowsWrite"))
            throw std::runtime_error("write");
        if (is("SilentWrite"))
            throw std::runtime_error("");
        if (is("LiteralSquare"))
            return QByteArrayLiteral("20");
        return is("LongWrite") ? QByteArray(65537, 'x') : QByteArray::number(values.at(0), 'g', 17);
    }
    bool ReadParameters(QByteArray const& bytes, QVector<double>& values) const override {
        if (is("ThrowsRead"))
            throw std::runtime_error("read");
        values = {bytes.toDouble()};
        if (is("ShortRead"))
            values.clear();
        if (is("NanRead"))
            values = {kNan};
        return !is("WrongRead");
    }
    QVector<ToolContour> MakeOutline(QVector<double> const& values) const override {
        if (is("ThrowsOutline"))
            throw std::runtime_error("outline");
        if (is("SilentOutline"))
            throw std::runtime_error("");
        if (is("ThrowsNumber"))
            throw 42;
        if (is("NoOutline"))
            return {};
        double side = values.at(0);
        if (is("NanOutline"))
            side = kNan;
        if (is("FarOutline"))
            side = 1.0e300;
        ToolContour square;
        square.closed = true;
        for (const QPointF& corner : {QPointF(side, 0), QPointF(side, side), QPointF(0, side)})
            square.segments.append({false, {}, {}, corner});
        if (is("ManyPoints"))
            square.segments.insert(0, 1000000, ToolSegment{false, {}, {}, QPointF(1, 1)});
        return QVector<ToolContour>(is("ManyStrokes") ? 1000000 : 1, square);
    }
    void Place(QPointF const& drag, QVector<double>& values) const override {
        if (is("ThrowsPlace"))
            throw std::runtime_error("place");
        values[0] = is("NanPlace") ? kNan : drag.x();
        if (is("ShortPlace"))
            values.clear();
    }

private:
    bool is(const char* name) const { return m_name == QLatin1String(name); }
    QString m_name;
};

/// An object kind without numbers.
class PlainTool : public IMarkToolBase {
public:
    QString GetToolClassName() const override { return QStringLiteral("NoGeometry"); }
    void SetAngleChanged(bool) override {}
    bool IsAngleChanged() const override { return false; }
    bool IsOpenCurve() const override { return false; }
};

class Info : public MarkToolBaseInfo {
public:
    explicit Info(const char* name)
        : m_name(QString::fromLatin1(name)) {}
    QIcon GetIcon() const override {
        if (m_name == QLatin1String("ThrowsIcon"))
            throw std::runtime_error("icon");
        return QIcon();
    }
    // Most modules give literals of their own library.
    QString GetToolClassName() const override {
        return m_name == QLatin1String("LiteralSquare") ? QStringLiteral("LiteralSquare") : m_name;
    }
    QString GetToolName() const override {
        return m_name == QLatin1String("LiteralSquare") ? QStringLiteral("Square of literals") : m_name;
    }

private:
    QString m_name;
};

class Module : public IMarkToolModule {
public:
    Module() {
        for (const char* name : kClasses)
            m_infos.push_back(std::make_unique<Info>(name));
        for (const char* name : {"", "GoodSquare", "ThrowsIcon"}) // no name, a name twice, one that cannot be asked
            m_infos.push_back(std::make_unique<Info>(name));
    }
    QVector<MarkToolBaseInfo*> GetToolInfos() const override {
        QVector<MarkToolBaseInfo*> infos = {nullptr};
        for (const auto& info : m_infos)
            infos.append(info.get());
        return infos;
    }
    IMarkToolBase* CreateTool(QString const& className) override {
        if (className == QLatin1String("ThrowsCreate"))
            throw std::runtime_error("create");
        if (className == QLatin1String("NullCreate"))
            return nullptr;
        if (className == QLatin1String("NoGeometry"))
            return new PlainTool;
        return new BadTool(className);
    }

private:
    std::vector<std::unique_ptr<Info>> m_infos;
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new Module;
}

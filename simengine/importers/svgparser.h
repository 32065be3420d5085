// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"
#include "simengine/importers/svgdom.h"

#include <QXmlStreamReader>

namespace sim {

/// Reads the XML of a drawing into a tree. Path data become outlines at once, so that a large drawing takes little more
/// than its points.
class SvgParser {
public:
    SvgParser(const QByteArray& bytes, SvgTree& tree, ImportResult& result, ImportBudget& budget);

    /// False, and the reason in `error`, for what is no drawing; the budget may be spent too.
    bool run(QString& error);

private:
    void startElement();
    bool readRoot();
    void startChild(const QString& name);
    int append(SvgElement element, const char* name);
    void readAttributes(SvgNode& node);
    void readShape(SvgNode& node, const QString& name);
    void readLengths(SvgNode& node, const QString& name);
    void readText(SvgNode& node);
    SvgDetail& detail(SvgNode& node);
    QString localName() const;
    QString interned(const QStringRef& text);
    SvgSettings styleOf(const QStringRef& text);
    void readStyle(SvgNode& node, const QStringRef& name, const QStringRef& value);
    bool readDetail(SvgNode& node, const QStringRef& name, const QStringRef& value);
    void readSheet();
    void skip(const QString& kind, Note note);

    /// Bytes that the tree may take.
    static constexpr qint64 kMostBytes = qint64(200) << 20;

    SvgTree& m_tree;
    ImportResult& m_result;
    ImportBudget& m_budget;
    QXmlStreamReader m_in;
    QString m_prefix;
    QString m_error;
    std::vector<int> m_open;
    QHash<QString, QString> m_strings;
    QHash<QString, SvgSettings> m_styles;
    qint64 m_bytes = 0;
    bool m_inStyle = false;
};

} // namespace sim

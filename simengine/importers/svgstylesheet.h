// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"
#include "simengine/importers/svgstyle.h"

namespace sim {

/// The rules of a drawing's style sheet.
class SvgStyleSheet {
public:
    /// What is not understood is told in the result.
    SvgStyleSheet(const QString& text, ImportResult& result, ImportBudget& budget);

    /// The style of a node whose parent has the given one.
    SvgStyle styleOf(const SvgTree& tree, int node, const SvgStyle& parent) const;

private:
    struct Compound {
        QString element; ///< empty for any
        QString id;
        QStringList classes;
        bool child = false; ///< must be the parent, not just above
    };
    struct Rule {
        std::vector<Compound> parts; ///< from the element upwards
        int weight = 0;
        SvgSettings settings; ///< one list for all selectors of a rule
    };

    void read(const QString& sheet);
    void addRule(const QStringRef& selectors, const QStringRef& body);
    bool addSelector(const QStringRef& selector, const SvgSettings& settings);
    bool readCompound(const QString& word, Rule& rule) const;
    bool matches(const SvgTree& tree, int node, const Rule& rule) const;
    static bool matches(const SvgNode& node, const Compound& part);

    ImportResult& m_result;
    ImportBudget& m_budget;
    std::vector<Rule> m_rules; ///< the weightiest last
    int m_unknown = 0;         ///< rules that are not obeyed
};

} // namespace sim

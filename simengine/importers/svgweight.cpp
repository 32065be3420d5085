// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgweight.h"

namespace sim {

namespace {

enum State { Unseen = -1, Open = -2 };

} // namespace

void SvgWeight::begin(const QString& id, const QString& reference) {
    const int index = int(m_nodes.size());
    m_nodes.push_back({reference, {}});
    if (!m_open.empty())
        m_nodes[size_t(m_open.back())].children.push_back(index);
    m_open.push_back(index);
    if (!id.isEmpty() && !m_ids.contains(id))
        m_ids.insert(id, index);
}

void SvgWeight::end() {
    m_open.pop_back();
}

QString SvgWeight::fault() const {
    if (m_nodes.empty())
        return QString();
    std::vector<qint64> weights(m_nodes.size(), Unseen);
    std::vector<int> stack = {0};
    while (!stack.empty()) {
        const int index = stack.back();
        const Node& node = m_nodes[size_t(index)];
        std::vector<int> parts = node.children;
        if (m_ids.contains(node.reference))
            parts.push_back(m_ids.value(node.reference));
        if (weights[size_t(index)] >= 0) {
            stack.pop_back();
            continue;
        }
        if (weights[size_t(index)] == Unseen) {
            weights[size_t(index)] = Open;
            for (int part : parts) {
                if (weights[size_t(part)] == Open)
                    return QStringLiteral("an element refers to itself");
                if (weights[size_t(part)] == Unseen)
                    stack.push_back(part);
            }
            continue;
        }
        qint64 weight = 1;
        for (int part : parts)
            weight = std::min(weight + weights[size_t(part)], kMostElements + 1);
        weights[size_t(index)] = weight;
        stack.pop_back();
    }
    return weights[0] > kMostElements ? QStringLiteral("the drawing has more than %1 elements").arg(kMostElements)
                                      : QString();
}

} // namespace sim

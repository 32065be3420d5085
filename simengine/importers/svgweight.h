// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <vector>

namespace sim {

/// Counts how many elements a drawing has once every reference is followed. A short file can refer to itself or double
/// itself again and again; it must be refused before it is drawn.
class SvgWeight {
public:
    /// Elements of a drawing at most, references followed.
    static constexpr qint64 kMostElements = 2000000;

    void begin(const QString& id, const QString& reference);
    void end();
    /// Empty, or why the drawing is refused.
    QString fault() const;

private:
    struct Node {
        QString reference; ///< id of the element that is shown here again
        std::vector<int> children;
    };
    std::vector<Node> m_nodes;
    std::vector<int> m_open;
    QHash<QString, int> m_ids;
};

} // namespace sim

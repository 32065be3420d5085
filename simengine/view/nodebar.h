// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QList>
#include <QWidget>

class QToolButton;

namespace sim {

class CanvasWidget;
class NodeEditTool;

/// Buttons at the upper edge of the drawing, large enough for fingers. With one object selected it offers to edit its
/// nodes, or to turn it into a path first; while nodes are edited it has the commands. Hidden otherwise and in
/// read-only documents.
class NodeBar : public QWidget {
    Q_OBJECT
public:
    explicit NodeBar(CanvasWidget& canvas);

    bool eventFilter(QObject* watched, QEvent* event) override;
    /// Takes the texts of the language anew.
    void changeEvent(QEvent* event) override;

private:
    struct Entry {
        QToolButton* button = nullptr;
        const char* key = nullptr;
    };

    void refresh();
    void build();
    void place();
    void setTexts();
    QToolButton* add(const char* name, const char* key, int icon);
    NodeEditTool* editor() const;
    void toPath();

    CanvasWidget& m_canvas;
    QList<Entry> m_entries;
    QList<QToolButton*> m_commands; ///< in the order of NodeCommand
    QToolButton* m_edit = nullptr;
    QToolButton* m_toPath = nullptr;
    QToolButton* m_adds = nullptr;
    QToolButton* m_done = nullptr;
};

} // namespace sim

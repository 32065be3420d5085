// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

class QGridLayout;
class QLabel;
class QListWidget;
class QPushButton;

namespace sim {

/// A page of the variables' dialog: a list of definitions of one kind, and the fields of the chosen one beside it.
class VariablePage : public QWidget {
    Q_OBJECT
public:
    int current() const;

signals:
    void changed();

protected:
    /// The fields stand in so many columns.
    VariablePage(const char* objectName, int columns, QWidget* parent);
    /// Lists all and chooses the first; once the derived page has its definitions.
    void listAll();
    /// A label with the text of a key, and the field.
    void addField(const char* key, QWidget* field);
    /// A line below the fields.
    void setNote(const QString& text);
    /// What the operator entered goes into the chosen definition; the list shows its name anew.
    void edited();

    virtual int count() const = 0;
    virtual QString nameOf(int index) const = 0;
    /// Appends a new definition.
    virtual void append() = 0;
    virtual void removeAt(int index) = 0;
    /// Fills the fields.
    virtual void fill(int index) = 0;
    /// Takes what the fields hold.
    virtual void take(int index) = 0;

private:
    void list(int index);
    void choose();
    void addOne();
    void removeOne();

    QListWidget* m_list = nullptr;
    QWidget* m_fields = nullptr;
    QGridLayout* m_form = nullptr;
    int m_columns;
    int m_fieldCount = 0;
    QLabel* m_note = nullptr;
    QPushButton* m_remove = nullptr;
    bool m_filling = false; ///< the fields change by the program
};

} // namespace sim

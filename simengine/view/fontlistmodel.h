// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractListModel>
#include <vector>

namespace sim {

/// The fonts of the operator's choice: first the single-line ones, then the families of outline fonts that scale.
class FontListModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { FamilyRole = Qt::UserRole, SingleLineRole, InstalledRole };
    /// Which fonts are listed.
    enum Kind { AllFonts, SingleLineFonts, OutlineFonts };

    explicit FontListModel(QObject* parent);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    void setKind(Kind kind);
    /// The row of a font, -1 when it is not listed.
    int rowOf(const QString& family, bool singleLine) const;
    /// Lists a font of a document that is not installed here.
    void addMissing(const QString& family, bool singleLine);

private:
    struct Entry {
        QString family;
        QString shown;
        bool singleLine = false;
        bool installed = true;
    };
    const Entry& entry(int row) const { return m_all[m_rows[static_cast<std::size_t>(row)]]; }

    std::vector<Entry> m_all;
    std::vector<std::size_t> m_rows;
    Kind m_kind = AllFonts;
};

} // namespace sim

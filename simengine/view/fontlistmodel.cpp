// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/fontlistmodel.h"

#include "engine/languagemanager.h"
#include "simengine/document/strokefonts.h"

#include <QFontDatabase>

namespace sim {

FontListModel::FontListModel(QObject* parent)
    : QAbstractListModel(parent) {
    for (const StrokeFontInfo& font : strokeFonts()) {
        const QString name = QLatin1String(font.name);
        if (isStrokeFontInstalled(name))
            m_all.push_back({name, LanguageManager::GetLanText(font.key), true, true});
    }
    QFontDatabase database;
    for (const QString& family : database.families()) {
        if (database.isSmoothlyScalable(family) && !database.isPrivateFamily(family))
            m_all.push_back({family, family, false, true});
    }
    setKind(AllFonts);
}

int FontListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant FontListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Entry& font = entry(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return font.shown;
    case FamilyRole:
        return font.family;
    case SingleLineRole:
        return font.singleLine;
    case InstalledRole:
        return font.installed;
    default:
        return {};
    }
}

void FontListModel::setKind(Kind kind) {
    beginResetModel();
    m_kind = kind;
    m_rows.clear();
    for (std::size_t i = 0; i < m_all.size(); ++i) {
        if (kind == AllFonts || m_all[i].singleLine == (kind == SingleLineFonts))
            m_rows.push_back(i);
    }
    endResetModel();
}

int FontListModel::rowOf(const QString& family, bool singleLine) const {
    for (int row = 0; row < rowCount(); ++row) {
        if (entry(row).family == family && entry(row).singleLine == singleLine)
            return row;
    }
    return -1;
}

void FontListModel::addMissing(const QString& family, bool singleLine) {
    m_all.insert(m_all.begin(), {family, family, singleLine, false});
    setKind(m_kind);
}

} // namespace sim

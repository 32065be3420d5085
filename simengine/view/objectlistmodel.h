// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"

#include <QAbstractListModel>
#include <QIcon>

namespace sim {

class ViewSession;

/// Chinese key of a kind's name.
const char* kindKey(ObjectKind kind);
/// Sign of a kind in a colour, 24 pixels.
QIcon kindIcon(ObjectKind kind, const QColor& color);

/// The objects of a document in marking order: sign in the pen's colour, number and kind, whether the object is marked.
class ObjectListModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { WorksRole = Qt::UserRole, PenColorRole };

    explicit ObjectListModel(ViewSession& session, QObject* parent);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// Qt::CheckStateRole switches whether the object is marked, as a step of undo.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Takes over the session's objects. Rows are added and removed at the end, so that the list keeps its place.
    void refresh();

private:
    QColor penColor(int pen) const;

    ViewSession& m_session;
    std::shared_ptr<const ObjectList> m_objects;
    bool m_readOnly; ///< as the rows show it
};

} // namespace sim

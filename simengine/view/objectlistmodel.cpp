// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/objectlistmodel.h"

#include "engine/languagemanager.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>

namespace sim {

namespace {

void drawKind(QPainter& painter, ObjectKind kind) {
    switch (kind) {
    case ObjectKind::Point:
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(QPointF(12, 12), 3, 3);
        break;
    case ObjectKind::Polyline:
        painter.drawPolyline(QPolygonF({QPointF(4, 18), QPointF(10, 7), QPointF(14, 16), QPointF(20, 5)}));
        break;
    case ObjectKind::Rect:
        painter.drawRect(QRectF(4.5, 6.5, 15, 11));
        break;
    case ObjectKind::Circle:
        painter.drawEllipse(QPointF(12, 12), 7.5, 7.5);
        break;
    case ObjectKind::Arc:
        painter.drawArc(QRectF(3, 6, 18, 24), 20 * 16, 140 * 16);
        break;
    case ObjectKind::Path: {
        QPainterPath path(QPointF(4, 17));
        path.cubicTo(QPointF(8, -2), QPointF(14, 26), QPointF(20, 6));
        painter.drawPath(path);
        break;
    }
    case ObjectKind::Group:
        painter.drawRect(QRectF(4.5, 4.5, 9, 9));
        painter.drawEllipse(QPointF(15, 15), 5, 5);
        break;
    case ObjectKind::Text:
        painter.drawPolyline(QPolygonF({QPointF(5, 8), QPointF(5, 5), QPointF(19, 5), QPointF(19, 8)}));
        painter.drawLine(QPointF(12, 5), QPointF(12, 19));
        painter.drawLine(QPointF(9, 19), QPointF(15, 19));
        break;
    case ObjectKind::Generated:
        painter.drawPolygon(
            QPolygonF({QPointF(12, 3.5), QPointF(20, 9.5), QPointF(17, 19), QPointF(7, 19), QPointF(4, 9.5)}));
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(QPointF(12, 12), 1.5, 1.5);
        break;
    case ObjectKind::Code:
        for (const QPointF& corner : {QPointF(4, 4), QPointF(14, 4), QPointF(4, 14)})
            painter.drawRect(QRectF(corner, QSizeF(6, 6)));
        painter.drawPolyline(QPolygonF({QPointF(14, 14), QPointF(20, 14), QPointF(20, 20)}));
        painter.drawPoint(QPointF(15, 19));
        break;
    }
}

/// What an object is listed as: its name, of a text or code without one what it shows in one line, else the kind.
QString listedName(const MarkObject& object) {
    constexpr int kMostShown = 80;
    if (!object.data().name.isEmpty())
        return object.data().name;
    if (const auto* text = std::get_if<TextShape>(&object.shape())) {
        QString line = (text->spec.variables ? text->shown : text->spec.text).left(kMostShown);
        return line.replace(QLatin1Char('\n'), QStringLiteral(" / "));
    }
    if (const auto* code = std::get_if<CodeShape>(&object.shape())) {
        QString line = (code->spec.variables ? code->shown : code->spec.text).left(kMostShown);
        return line.replace(QLatin1Char('\n'), QStringLiteral(" / "));
    }
    return LanguageManager::GetLanText(kindKey(object.kind()));
}

} // namespace

const char* kindKey(ObjectKind kind) {
    switch (kind) {
    case ObjectKind::Point:
        return "点";
    case ObjectKind::Polyline:
        return "线";
    case ObjectKind::Rect:
        return "矩形";
    case ObjectKind::Circle:
        return "圆形";
    case ObjectKind::Arc:
        return "圆弧";
    case ObjectKind::Path:
        return "曲线";
    case ObjectKind::Group:
        return "组合";
    case ObjectKind::Text:
        return "文字";
    case ObjectKind::Generated:
        return "工具图形";
    case ObjectKind::Code:
        return "条码";
    }
    return "";
}

QIcon kindIcon(ObjectKind kind, const QColor& color) {
    static QHash<QPair<int, QRgb>, QIcon> icons;
    QIcon& icon = icons[{static_cast<int>(kind), color.rgba()}];
    if (!icon.isNull())
        return icon;
    for (const int ratio : {1, 2}) {
        QPixmap pixmap(24 * ratio, 24 * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        drawKind(painter, kind);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

ObjectListModel::ObjectListModel(ViewSession& session, QObject* parent)
    : QAbstractListModel(parent)
    , m_session(session)
    , m_objects(session.state()->objects)
    , m_readOnly(session.document().isReadOnly()) {}

int ObjectListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_objects->size());
}

QColor ObjectListModel::penColor(int pen) const {
    return theme::onCanvas(m_session.penColors()[static_cast<std::size_t>(pen)]);
}

QVariant ObjectListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const MarkObject& object = *(*m_objects)[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return QStringLiteral("%1  %2").arg(index.row() + 1).arg(listedName(object));
    case Qt::ToolTipRole:
        return QStringLiteral("%1 %2").arg(LanguageManager::GetLanText("笔号")).arg(object.pen());
    case Qt::DecorationRole:
        return kindIcon(object.kind(), object.works() ? penColor(object.pen()) : QColor(theme::kNotWorking));
    case Qt::CheckStateRole:
        return object.works() ? Qt::Checked : Qt::Unchecked;
    case WorksRole:
        return object.works();
    case PenColorRole:
        return penColor(object.pen());
    default:
        return {};
    }
}

bool ObjectListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid() || index.row() >= rowCount())
        return false;
    const int row = index.row();
    const auto type = static_cast<int>(value.toInt() == Qt::Checked ? WorkType::On : WorkType::Off);
    return m_session.document().edit([=](const DocumentState& state) -> EditResult {
        DocumentState alone = state;
        alone.selection = Selection({row}, state.count());
        EditResult result = edits::setWorkType(alone, type);
        if (result)
            result->selection = state.selection;
        return result;
    });
}

Qt::ItemFlags ObjectListModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (!m_session.document().isReadOnly())
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

void ObjectListModel::refresh() {
    const std::shared_ptr<const ObjectList> next = m_session.state()->objects;
    const bool readOnly = m_session.document().isReadOnly();
    if (next == m_objects && readOnly == m_readOnly)
        return;
    m_readOnly = readOnly;
    const int before = rowCount();
    const int after = static_cast<int>(next->size());
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_objects = next;
        endInsertRows();
    } else if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_objects = next;
        endRemoveRows();
    } else {
        m_objects = next;
    }
    const int kept = qMin(before, after);
    if (kept > 0)
        emit dataChanged(index(0), index(kept - 1));
}

} // namespace sim

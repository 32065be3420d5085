// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/fontdelegate.h"

#include "engine/languagemanager.h"
#include "simengine/document/strokefonts.h"
#include "simengine/view/fontlistmodel.h"
#include "simengine/view/viewtheme.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>

namespace sim {

namespace {

constexpr int kMargin = 10;
constexpr double kNameShare = 0.46; ///< of the row's width
constexpr int kSamplePixels = 22;
constexpr double kStrokeCap = 16.0; ///< height of a capital letter of a single-line sample, px

QPainterPath strokeSample(const QString& font) {
    QPainterPath sample;
    double x = 0.0;
    for (const char character : {'A', 'a', 'B', 'b', '1', '2', '3'}) {
        const StrokeGlyph glyph = strokeGlyph(font, static_cast<uint>(character));
        int next = 0;
        for (PathVerb verb : glyph.path.verbs) {
            const QPointF& p = glyph.path.points[next++];
            const QPointF pixel((x + p.x()) * kStrokeCap, -p.y() * kStrokeCap);
            if (verb == PathVerb::Move)
                sample.moveTo(pixel);
            else
                sample.lineTo(pixel);
        }
        x += glyph.width;
    }
    return sample;
}

/// How much smaller a sample is drawn so that it is whole.
double shrinkage(double width, double room) {
    return width > room && room > 0.0 ? room / width : 1.0;
}

void drawOutlineSample(QPainter& painter, const QRect& area, const QString& family) {
    const bool chinese = QFontDatabase().writingSystems(family).contains(QFontDatabase::SimplifiedChinese);
    const QString text = chinese ? QStringLiteral("AaB123永") : QStringLiteral("AaBb123");
    QFont font(family);
    font.setPixelSize(kSamplePixels);
    const double shrink = shrinkage(QFontMetricsF(font).horizontalAdvance(text), area.width());
    font.setPixelSize(qMax(1, static_cast<int>(kSamplePixels * shrink)));
    painter.setFont(font);
    painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
}

void drawStrokeSample(QPainter& painter, const QRect& area, const QString& family) {
    const QPainterPath sample = strokeSample(family);
    const double shrink = shrinkage(sample.boundingRect().right() + 1.0, area.width());
    painter.translate(area.left(), area.center().y() + kStrokeCap * shrink / 2.0);
    painter.scale(shrink, shrink);
    painter.drawPath(sample);
}

/// A small framed word at the right end; gives what is left of the row.
QRect drawSign(QPainter& painter, const QRect& row, const QString& word) {
    QFont small = painter.font();
    small.setPixelSize(12);
    painter.setFont(small);
    const int width = painter.fontMetrics().horizontalAdvance(word) + 12;
    const QRect sign(row.right() - kMargin - width, row.center().y() - 10, width, 20);
    painter.setPen(QColor(theme::kAccent));
    painter.drawRoundedRect(QRectF(sign).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.drawText(sign, Qt::AlignCenter, word);
    return row.adjusted(0, 0, -width - kMargin, 0);
}

} // namespace

void FontDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool singleLine = index.data(FontListModel::SingleLineRole).toBool();
    const bool installed = index.data(FontListModel::InstalledRole).toBool();
    const QString family = index.data(FontListModel::FamilyRole).toString();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipRect(option.rect);
    const QRect row = option.rect;
    if (option.state & QStyle::State_Selected) {
        painter->fillRect(row, QColor(theme::kRowSelected));
        painter->fillRect(QRect(row.left(), row.top(), 3, row.height()), QColor(theme::kAccent));
    }
    painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1), QColor(theme::kGridMajor));
    painter->setFont(option.font);
    QRect rest = row;
    if (!installed)
        rest = drawSign(*painter, row, LanguageManager::GetLanText("未安装"));
    else if (singleLine)
        rest = drawSign(*painter, row, LanguageManager::GetLanText("单线"));
    const int nameWidth = static_cast<int>(row.width() * kNameShare) - kMargin;
    const QRect name(row.left() + kMargin, row.top(), nameWidth, row.height());
    painter->setFont(option.font);
    painter->setPen(QColor(theme::kRulerText));
    painter->drawText(name, Qt::AlignVCenter | Qt::AlignLeft,
                      option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, nameWidth));
    const QRect sample(name.right() + kMargin, row.top(), rest.right() - name.right() - kMargin, row.height());
    painter->setClipRect(sample);
    painter->setPen(QPen(Qt::black, singleLine ? 1.3 : 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (singleLine && installed)
        drawStrokeSample(*painter, sample, family);
    else if (installed)
        drawOutlineSample(*painter, sample, family);
    painter->restore();
}

QSize FontDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), kRowHeight};
}

} // namespace sim

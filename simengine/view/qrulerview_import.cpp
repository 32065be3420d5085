// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/msgbox.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/importers/svgimport.h"
#include "simengine/view/importreport.h"
#include "simengine/view/qrulerview_p.h"

#include <QFileDialog>
#include <limits>

namespace {

sim::ImportResult readDrawing(const QString& path, const QPointF& center) {
    sim::ImportOptions options;
    options.center = center;
    return sim::importSvg(path, options);
}

bool addDrawing(sim::ViewSession& session, const sim::ImportResult& drawing, QString& error) {
    if (!drawing.ok())
        error = drawing.error;
    else if (session.document().isReadOnly())
        error = LanguageManager::GetLanText("文档只读");
    else if (drawing.objects.empty())
        error = LanguageManager::GetLanText("文件中没有可导入的对象");
    else if (session.document().edit(
                 [&](const sim::DocumentState& state) { return sim::edits::add(state, drawing.objects); }))
        return true;
    else
        error = LanguageManager::GetLanText("图形超出坐标范围");
    return false;
}

} // namespace

void QRulerView::ImportVectorFile() {
    if (d->session.document().isReadOnly())
        return;
    const QString path = QFileDialog::getOpenFileName(this, LanguageManager::GetLanText("导入矢量文件"), QString(),
                                                      QStringLiteral("SVG (*.svg *.SVG)"));
    if (path.isEmpty())
        return;
    d->canvas->cancelGesture();
    const sim::ImportResult drawing = readDrawing(path, d->canvas->fieldMm().center());
    QString error;
    const bool added = addDrawing(d->session, drawing, error);
    const QString report = added ? sim::importReport(drawing) : error;
    MarkLog::Instance()->ShowNode(NoteOperator,
                                  LanguageManager::GetLanText("导入矢量文件") + ":" + path + ":" + report);
    msgBox::show(LanguageManager::GetLanText("导入矢量文件"), report, 1);
}

bool QRulerView::ImportVectorFile(QString const& path, QString& error) {
    d->canvas->cancelGesture();
    const sim::ImportResult drawing = readDrawing(path, d->canvas->fieldMm().center());
    error.clear();
    if (!addDrawing(d->session, drawing, error))
        return false;
    MarkLog::Instance()->ShowNode(NoteOperator,
                                  LanguageManager::GetLanText("导入矢量文件") + ":" + path + ":" +
                                      sim::importReport(drawing).replace(QLatin1Char('\n'), QLatin1Char(';')));
    return true;
}

void QRulerView::GetDocStatistics(int& objects, int& vertices) const {
    const sim::DocumentStatistics statistics = sim::statisticsOf(*d->session.state());
    objects = statistics.objects;
    vertices = static_cast<int>(qMin<qint64>(statistics.vertices, std::numeric_limits<int>::max()));
}

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/msgbox.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/importers/imageimport.h"
#include "simengine/importers/importers.h"
#include "simengine/view/imagedialog.h"
#include "simengine/view/importreport.h"
#include "simengine/view/qrulerview_p.h"

#include <QFileDialog>
#include <QPointer>
#include <limits>

namespace {

sim::ImportOptions importOptions(const sim::ViewSession& session, const sim::CanvasWidget& canvas) {
    sim::ImportOptions options;
    options.center = canvas.fieldMm().center();
    options.pen = session.currentPen();
    return options;
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

/// A dialog that goes with the window it asks over, as its child; it is not on the stack for that reason.
template<class Dialog>
class AskingDialog {
public:
    template<class... Arguments>
    explicit AskingDialog(Arguments&&... arguments)
        : m_dialog(new Dialog(std::forward<Arguments>(arguments)...)) {}
    ~AskingDialog() { delete m_dialog; }
    AskingDialog(const AskingDialog&) = delete;
    AskingDialog& operator=(const AskingDialog&) = delete;

    /// False too when the dialog is gone.
    bool isAgreed() { return m_dialog->exec() == QDialog::Accepted && m_dialog; }
    Dialog* operator->() const { return m_dialog; }

private:
    QPointer<Dialog> m_dialog;
};

/// Empty when none is chosen.
QString askForDrawing(QWidget* window) {
    AskingDialog<QFileDialog> dialog(window, LanguageManager::GetLanText("导入矢量文件"), QString(),
                                     sim::importFilter(LanguageManager::GetLanText("所有图形文件")));
    dialog->setFileMode(QFileDialog::ExistingFile);
    return dialog.isAgreed() ? dialog->selectedFiles().value(0) : QString();
}

} // namespace

void QRulerView::ImportVectorFile() {
    if (d->session.document().isReadOnly())
        return;
    // A controlling station may close the document while a dialog asks.
    const QPointer<QRulerView> view(this);
    const QString path = askForDrawing(window());
    if (path.isEmpty() || !view)
        return;
    d->canvas->cancelGesture();
    sim::ImportResult drawing;
    if (sim::isImage(path)) {
        AskingDialog<sim::ImageDialog> dialog(path, window());
        if (!dialog.isAgreed() || !view)
            return;
        drawing = dialog->result(importOptions(d->session, *d->canvas));
    } else {
        drawing = sim::importDrawing(path, importOptions(d->session, *d->canvas));
    }
    QString error;
    const bool added = addDrawing(d->session, drawing, error);
    const QString report = added ? sim::importReport(drawing) : error;
    MarkLog::Instance()->ShowNode(NoteOperator,
                                  LanguageManager::GetLanText("导入矢量文件") + ":" + path + ":" + report);
    msgBox::show(LanguageManager::GetLanText("导入矢量文件"), sim::shownReport(report), 1);
}

bool QRulerView::ImportVectorFile(QString const& path, QString& error) {
    d->canvas->cancelGesture();
    const sim::ImportResult drawing = sim::importDrawing(path, importOptions(d->session, *d->canvas));
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

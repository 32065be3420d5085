// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/msgbox.h"
#include "simengine/document/contained.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/importers/imageimport.h"
#include "simengine/importers/importers.h"
#include "simengine/importers/importfile.h"
#include "simengine/view/imagedialog.h"
#include "simengine/view/importreport.h"
#include "simengine/view/qrulerview_p.h"
#include "simengine/view/runningjob.h"

#include <QFileDialog>
#include <QPointer>
#include <functional>
#include <limits>

namespace {

sim::ImportOptions importOptions(const sim::ViewSession& session, const sim::CanvasWidget& canvas) {
    sim::ImportOptions options;
    options.center = canvas.fieldMm().center();
    options.pen = session.currentPen();
    return options;
}

/// The objects of a drawing become part of the document, or why not.
QString fault(sim::ViewSession& session, const sim::ImportResult& drawing) {
    if (!drawing.ok())
        return drawing.error;
    if (session.document().isReadOnly())
        return LanguageManager::GetLanText("文档只读");
    if (drawing.objects.empty())
        return LanguageManager::GetLanText("文件中没有可导入的对象");
    if (!session.document().edit(
            [&](const sim::DocumentState& state) { return sim::edits::add(state, drawing.objects); }))
        return LanguageManager::GetLanText("图形超出坐标范围");
    return QString();
}

/// Adds a drawing, and tells in the log, whatever else it is to keep, and in `report` what came of it: first the
/// reason when nothing was added.
bool addDrawing(sim::ViewSession& session, const QString& path, const std::function<sim::ImportResult()>& read,
                QString& report) {
    sim::ImportResult drawing;
    QString refusal;
    sim::contained(refusal, [&] {
        drawing = read();
        refusal = fault(session, drawing);
    });
    QStringList lines;
    if (!refusal.isEmpty())
        lines << refusal;
    if (drawing.ok())
        lines << sim::importReport(drawing);
    report = lines.join(QLatin1Char('\n'));
    MarkLog::Instance()->ShowNote(LanguageManager::GetLanText("导入矢量文件") + ":" + path + ":" + report);
    return refusal.isEmpty();
}

/// Reading a drawing holds up the main thread, which also looks at the inputs of the machine: not while something is
/// marked.
sim::ImportResult readDrawing(const QString& path, const sim::ImportOptions& options) {
    if (sim::jobRuns())
        return sim::failedImport(QStringLiteral("%1: %2").arg(path, LanguageManager::GetLanText("打标时不能导入图形")));
    return sim::importDrawing(path, options);
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
    const sim::ImportOptions options = importOptions(d->session, *d->canvas);
    QString report;
    if (sim::isImage(path)) {
        AskingDialog<sim::ImageDialog> dialog(path, window());
        if (!dialog.isAgreed() || !view)
            return;
        addDrawing(
            d->session, path, [&] { return dialog->result(options); }, report);
    } else {
        addDrawing(
            d->session, path, [&] { return readDrawing(path, options); }, report);
    }
    msgBox::show(LanguageManager::GetLanText("导入矢量文件"), sim::shownReport(report), 1);
}

bool QRulerView::ImportVectorFile(QString const& path, QString& report) {
    d->canvas->cancelGesture();
    const sim::ImportOptions options = importOptions(d->session, *d->canvas);
    return addDrawing(
        d->session, path, [&] { return readDrawing(path, options); }, report);
}

void QRulerView::GetDocStatistics(int& objects, int& vertices) const {
    const sim::DocumentStatistics statistics = sim::statisticsOf(*d->session.state());
    objects = statistics.objects;
    vertices = static_cast<int>(qMin<qint64>(statistics.vertices, std::numeric_limits<int>::max()));
}

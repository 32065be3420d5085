// SPDX-License-Identifier: MIT
#include "files/copymarkfile.h"

#include "engine/filecopybehavior.h"
#include "engine/filehelpers.h"
#include "engine/languagemanager.h"
#include "files/markfilemerge.h"
#include "maintenance/notice.h"
#include "maintenance/workprogress.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

namespace {

constexpr char kExtension[] = ".mkf";
constexpr int kNamesShown = 8; // of those that failed

/// Names without extension of the mark documents in a folder. Beside them lies the list of recent files; one whose
/// extension is in capitals is not found under its name.
QStringList documentNames(QString const& folder) {
    QStringList names;
    for (QString const& file : ListFiles(QDir(folder), true)) {
        if (file.endsWith(QLatin1String(kExtension)))
            names.append(file.chopped(sizeof(kExtension) - 1));
    }
    return names;
}

tessera::MergeAnswer ask(QString const& text, QString const& name, QVector<QString> const& taken) {
    FileCopyBehavior dialog(text, name, taken, QApplication::activeWindow());
    tessera::MergeAnswer answer;
    answer.accepted = dialog.exec() == QDialog::Accepted;
    answer.applyAll = dialog.ApplyAll();
    answer.operation = dialog.Operator();
    answer.name = dialog.FileName();
    return answer;
}

/// Carries the plan out; what was not copied although it is there.
QStringList copyAll(QVector<tessera::MergeStep> const& steps, QString const& source, QString const& target,
                    tessera::WorkControl& control) {
    QStringList failed;
    control.makeFinal();
    control.setTotal(steps.size());
    for (tessera::MergeStep const& step : steps) {
        const QString from = source + QLatin1Char('/') + step.from;
        // A document need not have a project of its name, so a missing file is no failure.
        if (!CopyFile(from, target + QLatin1Char('/') + step.to) && QFileInfo::exists(from))
            failed.append(step.from);
        control.add(1);
    }
    return failed;
}

void showFailed(QStringList const& failed) {
    QString text = LanguageManager::GetLanText("以下文件导入失败:") + QLatin1Char('\n') +
                   failed.mid(0, kNamesShown).join(QLatin1Char('\n'));
    if (failed.size() > kNamesShown)
        text += QStringLiteral("\n... (%1)").arg(failed.size());
    tessera::ShowNotice(QApplication::activeWindow(), QMessageBox::Warning, LanguageManager::GetLanText("错误"), text);
}

} // namespace

bool CopyMarkFile(QString const& source, QString const& target) {
    const QVector<tessera::MergeStep> steps = tessera::PlanMerge(documentNames(source), documentNames(target), ask);
    QStringList failed;
    WorkProgress progress(QApplication::activeWindow(), LanguageManager::GetLanText("正在复制文件,请稍候"));
    progress.Run([&](tessera::WorkControl& control) { failed = copyAll(steps, source, target, control); });
    if (!failed.isEmpty())
        showFailed(failed);
    return failed.isEmpty();
}

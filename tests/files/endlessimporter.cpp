// SPDX-License-Identifier: MIT
// Imports the backups "one" and "two" from the stick in turn until it is killed, by the buttons of the dialog, with the
// lists of open documents and all conflicts overwritten. Tells on the standard output that it has begun and, a line
// each, which import is complete. TESSERA_ROOT, TESSERA_MEDIA_ROOT and TMPDIR name its folders.
#include "files/filemanager.h"
#include "tests/support/dialoganswerer.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include <cstdio>

namespace {

void importBackup(QString const& name) {
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    tests::DialogAnswerer answerer;
    answerer.leave(QStringLiteral("WorkProgress"));
    answerer.fillAndPress(
        [name](QWidget& shown) {
            shown.findChild<QLineEdit*>(QStringLiteral("lineEditFileName"))->setText(name);
            shown.findChild<QCheckBox*>(QStringLiteral("checkBoxImportConfig"))->setChecked(true);
        },
        QStringLiteral("pushButtonOK"));
    answerer.fillAndPress(
        [](QWidget& shown) { shown.findChild<QCheckBox*>(QStringLiteral("checkBoxApplyAll"))->setChecked(true); },
        QStringLiteral("确定"));
    dialog.findChild<QPushButton*>(QStringLiteral("pushButtonImportFile"))->click();
}

void tell(char const* line) {
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    tell("importing");
    for (;;) {
        for (char const* name : {"one", "two"}) {
            importBackup(QString::fromLatin1(name));
            tell(name);
        }
    }
}

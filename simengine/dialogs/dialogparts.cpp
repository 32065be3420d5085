// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/dialogs/dialogparts.h"

#include "engine/languagemanager.h"

#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>

namespace sim {

QPushButton* makeButton(char const* key, char const* objectName, QWidget* parent) {
    auto* button = new QPushButton(LanguageManager::GetLanText(key), parent);
    button->setObjectName(QString::fromLatin1(objectName));
    button->setMinimumSize(96, kTouchHeight);
    return button;
}

ButtonRow makeOkCancel(QDialog* dialog) {
    ButtonRow row{new QHBoxLayout, makeButton("确定", "pushButtonOK", dialog),
                  makeButton("取消", "pushButtonCancel", dialog)};
    row.ok->setDefault(true);
    row.cancel->setAutoDefault(false);
    row.layout->addStretch();
    row.layout->addWidget(row.ok);
    row.layout->addWidget(row.cancel);
    QObject::connect(row.cancel, &QPushButton::clicked, dialog, &QDialog::reject);
    return row;
}

QFormLayout* makeForm(QDialog* dialog) {
    auto* form = new QFormLayout(dialog);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    form->setSpacing(8);
    return form;
}

void prepareDialog(QDialog* dialog, QString const& title) {
    dialog->setWindowTitle(title);
    dialog->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    dialog->setMinimumWidth(320);
    // A style sheet's least heights win over those of the widgets, so the dialog has them in a style sheet of its own.
    dialog->setStyleSheet(QStringLiteral("QPushButton, QLineEdit, QComboBox, QAbstractSpinBox, QRadioButton, QCheckBox "
                                         "{ min-height: %1px; }")
                              .arg(kTouchHeight));
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/lanselect.h"

#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "simengine/dialogs/dialogparts.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

/// The languages by their own names, so that everybody finds theirs.
struct Language {
    char const* code;
    char const* name;
    char const* objectName;
};
constexpr Language kLanguages[] = {
    {"zh_CN", "中文", "radioButtonChinese"}, // not shown
    {"en", "English", "radioButtonEnglish"},
};

} // namespace

struct LanSelect::Private {
    QVector<QRadioButton*> choices;
};

LanSelect::LanSelect(QWidget* parent)
    : QDialog(parent)
    , d(std::make_unique<Private>()) {
    setObjectName(QStringLiteral("LanSelect"));
    sim::prepareDialog(this, LanguageManager::GetLanText("语言选择"));
    auto* layout = new QVBoxLayout(this);
    for (Language const& language : kLanguages) {
        auto* choice = new QRadioButton(QString::fromUtf8(language.name), this);
        choice->setObjectName(QString::fromLatin1(language.objectName));
        choice->setMinimumHeight(sim::kTouchHeight);
        choice->setChecked(LanguageManager::GetCurrentLan() == QLatin1String(language.code));
        layout->addWidget(choice);
        d->choices.append(choice);
    }
    sim::ButtonRow const buttons = sim::makeOkCancel(this);
    layout->addLayout(buttons.layout);
    connect(buttons.ok, &QPushButton::clicked, this, [this] {
        for (int i = 0; i < d->choices.size(); ++i) {
            QString const code = QLatin1String(kLanguages[i].code);
            if (!d->choices[i]->isChecked() || code == LanguageManager::GetCurrentLan())
                continue;
            if (LanguageManager::SetCurrentLan(code))
                msgBox::show(LanguageManager::GetLanText("提示"),
                             LanguageManager::GetLanText("语言设置成功,重启软件后全部生效"), 1);
            else
                msgBox::show(LanguageManager::GetLanText("错误"), LanguageManager::GetLanText("保存失败"), 1);
            break;
        }
        accept();
    });
}

LanSelect::~LanSelect() = default;

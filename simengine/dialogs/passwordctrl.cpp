// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/passwordctrl.h"

#include "simengine/dialogs/dialogparts.h"

#include <QGridLayout>
#include <QPushButton>

namespace {

/// The keys row by row; the codes are those of BtnClicked.
struct Key {
    char const* text;
    int code;
};
constexpr int kBack = 10;
constexpr int kClear = 11;
constexpr int kColumns = 3;
constexpr Key kKeys[] = {{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4},     {"5", 5}, {"6", 6},
                         {"7", 7}, {"8", 8}, {"9", 9}, {"←", kBack}, {"0", 0}, {"C", kClear}};

} // namespace

struct PassWordCtrl::Private {};

PassWordCtrl::PassWordCtrl(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>()) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    int place = 0;
    for (Key const& key : kKeys) {
        auto* button = new QPushButton(QString::fromUtf8(key.text), this);
        button->setObjectName(QStringLiteral("pushButtonKey%1").arg(key.code));
        button->setMinimumSize(64, 48);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        button->setFocusPolicy(Qt::NoFocus);
        button->setAutoDefault(false);
        int const code = key.code;
        connect(button, &QPushButton::clicked, this, [this, code] { emit BtnClicked(code); });
        grid->addWidget(button, place / kColumns, place % kColumns);
        ++place;
    }
}

PassWordCtrl::~PassWordCtrl() = default;

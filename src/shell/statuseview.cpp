// SPDX-License-Identifier: MIT
#include "shell/statuseview.h"

#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "engine/vzlistviewex.h"
#include "shell/mainwindow.h"
#include "ui_statuseview.h"

#include <QEvent>

namespace {

void showSwitch(QLabel* label, bool on) {
    label->setPixmap(QPixmap(QString::fromLatin1(on ? ":/Res/btncheckon2.png" : ":/Res/btncheckoff2.png")));
}

/// The object list of the active view, null without one.
VZListViewEx* activeList() {
    MainWindow* window = MainWindow::Instance();
    QRulerView* view = window ? window->GetActiveView() : nullptr;
    return view ? view->GetObjListView() : nullptr;
}

} // namespace

StatuseView::StatuseView(QWidget* parent)
    : QFrame(parent)
    , ui(new Ui_StatuseView) {
    ui->setupUi(this);
    const struct {
        QPushButton* button;
        char const* icon;
    } moves[] = {{ui->pushButtonMoveUp, ":/Icon/Res/MoveUp.png"},
                 {ui->pushButtonMoveTop, ":/Icon/Res/MoveTop.png"},
                 {ui->pushButtonMoveDown, ":/Icon/Res/MoveDown.png"},
                 {ui->pushButtonMoveBotton, ":/Icon/Res/MoveBottom.png"}};
    for (auto const& move : moves)
        move.button->setIcon(QIcon(QString::fromLatin1(move.icon)));
    ui->label_Bindicate_red->installEventFilter(this);
    ui->label_Bprotective_gas->installEventFilter(this);
    showSwitch(ui->label_Bindicate_red, false);
    showSwitch(ui->label_Bprotective_gas, false);
    connect(ui->listWidget, &QListWidget::doubleClicked, this, &StatuseView::ClearText);
}

StatuseView::~StatuseView() = default;

void StatuseView::ShowText(QString const& text, DebugInfoType) {
    ui->listWidget->addItem(text);
}

bool StatuseView::Shows(QVector<QString> const& texts) const {
    if (ui->listWidget->count() != texts.size())
        return false;
    for (int row = 0; row < texts.size(); ++row) {
        if (ui->listWidget->item(row)->text() != texts.at(row))
            return false;
    }
    return true;
}

void StatuseView::ClearText() {
    ui->listWidget->clear();
}

void StatuseView::SetProtectGas(int bit, QString const& name) {
    ui->labelExternSet->setText(LanguageManager::GetLanText(name));
    ui->label_Bprotective_gas->setEnabled(bit >= 0);
    if (bit >= 0)
        showSwitch(ui->label_Bprotective_gas, IOOutputSet::Instance()->ProtectGasEnabled(MarkCardInstance::Instance()));
}

void StatuseView::SetRedLight(int bit, QString const& name) {
    ui->labelLaserRed->setText(LanguageManager::GetLanText(name));
    ui->label_Bindicate_red->setEnabled(bit >= 0);
    if (bit >= 0)
        showSwitch(ui->label_Bindicate_red, IOOutputSet::Instance()->RedLightEnabled(MarkCardInstance::Instance()));
}

QLabel* StatuseView::RedLabel() const {
    return ui->label_Bindicate_red;
}

QLabel* StatuseView::GasLabel() const {
    return ui->label_Bprotective_gas;
}

bool StatuseView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress)
        return QFrame::eventFilter(watched, event);
    IOOutputSet* outputs = IOOutputSet::Instance();
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (watched == GasLabel() && GasLabel()->isEnabled()) {
        const bool on = !outputs->ProtectGasEnabled(card);
        outputs->SetProtectGas(card, on);
        showSwitch(GasLabel(), on);
        return true;
    }
    if (watched == RedLabel()) {
        const bool on = !outputs->RedLightEnabled(card);
        outputs->SetRedLight(card, on);
        showSwitch(RedLabel(), on);
        return true;
    }
    return QFrame::eventFilter(watched, event);
}

void StatuseView::on_pushButtonMoveUp_clicked() {
    if (VZListViewEx* list = activeList())
        list->MoveObjUp();
}

void StatuseView::on_pushButtonMoveTop_clicked() {
    if (VZListViewEx* list = activeList())
        list->MoveObj2First();
}

void StatuseView::on_pushButtonMoveDown_clicked() {
    if (VZListViewEx* list = activeList())
        list->MoveObjDown();
}

void StatuseView::on_pushButtonMoveBotton_clicked() {
    if (VZListViewEx* list = activeList())
        list->MoveObj2Last();
}

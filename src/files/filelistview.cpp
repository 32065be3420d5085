// SPDX-License-Identifier: MIT
#include "files/filelistview.h"

#include "engine/languagemanager.h"
#include "engine/layerparamex.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "files/filelistwidget.h"
#include "files/mfilebutton.h"
#include "shell/mainwindow.h"
#include "ui_filelistview.h"

#include <QMessageBox>

namespace {

constexpr QSize kItemSize{10, 24};

/// Marking and welding know the single-point waveform; the custom and the central-control mode only where it is
/// switched on.
constexpr int kLastWorkModeWithWave = 1;

bool pointWaveLocked() {
    SystemParam const* system = SystemParam::Instance();
    return system->GetWorkMode() > kLastWorkModeWithWave && !system->EnableWaveForm();
}

/// Pens that have it off already are not written: a run may be reading them.
void clearPointWave(LayerParamEx* layers) {
    for (LayerData& layer : layers->GetLayerData()) {
        if (layer.PointWaveEnable != 0)
            layer.PointWaveEnable = 0;
    }
}

} // namespace

FileListView::FileListView(QWidget* parent)
    : QFrame(parent)
    , ui(new Ui_FileListView)
    , m_pList(new FileListWidget(this)) {
    ui->setupUi(this);
    m_pList->setObjectName(QStringLiteral("listWidget"));
    ui->verticalLayout->addWidget(m_pList);
    m_pList->setStyleSheet(QStringLiteral("QListWidget { border: 1px solid gray; color: black; outline: none; }"
                                          "QLabel { color: black; }"
                                          "QListWidget::item:selected { background: lightgreen; color: red; }"
                                          "QPushButton { border: none; background: transparent; padding: 0; }"
                                          "QPushButton:pressed { background: #d3deea; }"));
    connect(m_pList, &QListWidget::currentRowChanged, this, &FileListView::on_listWidget_currentRowChanged);
    connect(m_pList, &FileListWidget::ChangeFileIndex, this, &FileListView::OnChangeFileIndex);
}

FileListView::~FileListView() = default;

MFileButton* FileListView::Button(int row) const {
    return qobject_cast<MFileButton*>(m_pList->itemWidget(m_pList->item(row)));
}

int FileListView::RowOf(QString const& name) const {
    for (int row = 0; row < m_pList->count(); ++row) {
        if (Button(row)->GetFileName() == name)
            return row;
    }
    return -1;
}

void FileListView::InsertItem(int row, QString const& name) {
    auto* item = new QListWidgetItem;
    item->setSizeHint(kItemSize);
    m_pList->insertItem(row, item);
    m_pList->setItemWidget(item, new MFileButton(this, name));
    SetRowName(row, name);
    m_pList->updateGeometry();
}

/// The item draws no text of its own, yet tells its name to whoever reads the list without seeing it.
void FileListView::SetRowName(int row, QString const& name) {
    m_pList->item(row)->setData(Qt::AccessibleTextRole, name);
    Button(row)->SetFileName(name);
}

void FileListView::AddItem(QString const& name) {
    InsertItem(m_pList->count(), name);
}

void FileListView::AddFile(QString const& name) {
    AddItem(name);
    m_pList->clearSelection();
    m_pList->setCurrentRow(m_pList->count() - 1);
}

void FileListView::InsertFile(int row, QString const& name) {
    InsertItem(row, name);
    SetActive(row);
}

void FileListView::SetActive(int index) {
    m_pList->clearSelection();
    if (QListWidgetItem* item = m_pList->item(index))
        item->setSelected(true);
    m_pList->setCurrentRow(index);
}

void FileListView::ChangeFileName(QString const& old, QString const& now) {
    const int row = RowOf(old);
    if (row >= 0)
        SetRowName(row, now);
}

void FileListView::CloseFile(QString const& name, bool ask) {
    if (!ask) {
        RemoveItem(name, true);
        return;
    }
    const QMessageBox::StandardButton answer = QMessageBox::question(
        MainWindow::Instance(), LanguageManager::GetLanText("删除文档"),
        LanguageManager::GetLanText("是否保存当前文档"), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    if (answer == QMessageBox::Yes || answer == QMessageBox::No)
        RemoveItem(name, answer == QMessageBox::Yes);
}

void FileListView::RemoveItem(QString const& name, bool save) {
    const int row = RowOf(name);
    if (row < 0)
        return;
    delete m_pList->item(row);
    m_pList->updateGeometry();
    emit ClosedFile(row, save);
}

void FileListView::OnChangeFileIndex(int from, int to) {
    if (from < 0 || from >= m_pList->count() || to < 0 || to >= m_pList->count())
        return;
    m_bAnswerRows = false;
    const QString name = Button(from)->GetFileName();
    delete m_pList->takeItem(from);
    InsertItem(to, name);
    m_pList->setCurrentRow(to);
    emit ChangeFileIndex(from, to);
    m_bAnswerRows = true;
}

void FileListView::SetUIText() {
    for (int row = 0; row < m_pList->count(); ++row)
        Button(row)->SetUIText();
}

void FileListView::on_listWidget_currentRowChanged(int row) {
    for (int i = 0; i < m_pList->count(); ++i) {
        if (MFileButton* button = Button(i))
            button->SetCurrent(i == row);
    }
    if (m_bAnswerRows)
        emit ActivDocChanged(row);
    MainWindow* window = MainWindow::Instance();
    QRulerView* view = window && pointWaveLocked() ? window->GetCurDoc() : nullptr;
    if (view)
        clearPointWave(view->GetLayerParams());
}

/// Only the current row counts.
void FileListView::on_listWidget_itemSelectionChanged() {}

/// Keys are the list's.
void FileListView::keyPressEvent(QKeyEvent*) {}

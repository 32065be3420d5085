// SPDX-License-Identifier: MIT
#include "shell/alarmhistorydialog.h"

#include "engine/authoritymanager.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "files/touchrowdelegate.h"
#include "shell/alarmhistorycsv.h"
#include "shell/alarmhistorymodel.h"
#include "shell/alarmrecorder.h"
#include "ui_alarmhistorydialog.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMessageBox>
#include <QSet>

namespace {

/// Widths that hold a time of day and date, and the words of a state in both languages; the text takes the rest.
constexpr int kColumnWidths[tessera::AlarmColumnCount] = {116, 56, 162, 0, 162, 162, 96};
constexpr int kHeaderHeight = 32;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

AlarmHistoryDialog::AlarmHistoryDialog(tessera::AlarmRecorder* recorder, QWidget* parent)
    : QDialog(parent)
    , m_pRecorder(recorder)
    , m_pModel(new tessera::AlarmHistoryModel(recorder, this))
    , ui(new Ui_AlarmHistoryDialog) {
    setAttribute(Qt::WA_DeleteOnClose);
    ui->setupUi(this);
    BuildTable();
    SetUIText();
    EnableButtons();
    ShowStoreState(recorder->StoreError());
    connect(recorder, &tessera::AlarmRecorder::StoreStateChanged, this, &AlarmHistoryDialog::ShowStoreState);
    // With storing at fault as well that is the message that matters.
    connect(m_pModel, &tessera::AlarmHistoryModel::ReadFailed, this, [this] {
        if (m_pRecorder->StoreError().isEmpty())
            ShowMessage(text("报警记录读取失败"), true);
    });
    m_pModel->fetchMore(QModelIndex());
}

AlarmHistoryDialog::~AlarmHistoryDialog() = default;

void AlarmHistoryDialog::BuildTable() {
    QTableView* table = ui->tableAlarms;
    table->setModel(m_pModel);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(tessera::kTouchRowHeight);
    QHeaderView* header = table->horizontalHeader();
    header->setFixedHeight(kHeaderHeight);
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int column = 0; column < tessera::AlarmColumnCount; ++column) {
        if (kColumnWidths[column] > 0)
            table->setColumnWidth(column, kColumnWidths[column]);
    }
    header->setSectionResizeMode(tessera::AlarmColumnText, QHeaderView::Stretch);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &AlarmHistoryDialog::EnableButtons);
    connect(m_pModel, &QAbstractItemModel::modelReset, this, &AlarmHistoryDialog::EnableButtons);
    connect(m_pModel, &QAbstractItemModel::dataChanged, this, &AlarmHistoryDialog::EnableButtons);
}

void AlarmHistoryDialog::SetUIText() {
    setWindowTitle(text("报警记录"));
    ui->radioButtonAll->setText(text("全部报警"));
    ui->radioButtonActive->setText(text("当前报警"));
    ui->pushButtonAcknowledge->setText(text("确认报警"));
    ui->pushButtonAcknowledgeAll->setText(text("确认全部"));
    ui->pushButtonExport->setText(text("导出"));
    ui->pushButtonClose->setText(text("关闭"));
    m_pModel->Retranslate();
}

QList<int> AlarmHistoryDialog::SelectedRows() const {
    QSet<int> rows;
    for (QModelIndex const& index : ui->tableAlarms->selectionModel()->selectedIndexes())
        rows.insert(index.row());
    return rows.values();
}

/// An alarm is acknowledged once.
void AlarmHistoryDialog::EnableButtons() {
    bool open = false;
    for (int row : SelectedRows())
        open = open || !m_pModel->Entry(row).IsAcknowledged();
    ui->pushButtonAcknowledge->setEnabled(open);
}

void AlarmHistoryDialog::on_pushButtonAcknowledge_clicked() {
    QVector<qint64> numbers;
    for (int row : SelectedRows()) {
        tessera::AlarmEntry const& entry = m_pModel->Entry(row);
        if (!entry.IsAcknowledged())
            numbers.append(entry.number);
    }
    m_pRecorder->Acknowledge(numbers, AuthorityManager::GetCurrentUser());
}

void AlarmHistoryDialog::on_pushButtonAcknowledgeAll_clicked() {
    m_pRecorder->AcknowledgeAll(AuthorityManager::GetCurrentUser());
}

void AlarmHistoryDialog::on_radioButtonActive_toggled(bool on) {
    m_pModel->SetActiveOnly(on);
    m_pModel->fetchMore(QModelIndex());
}

void AlarmHistoryDialog::on_pushButtonClose_clicked() {
    close();
}

/// A stick is offered first: what is exported is mostly taken away.
void AlarmHistoryDialog::on_pushButtonExport_clicked() {
    const QString name =
        QStringLiteral("alarms-%1.csv").arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
    QFileDialog dialog(this, text("导出报警记录"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(QStringLiteral("CSV (*.csv)"));
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    dialog.setDirectory(QFileInfo(QStringLiteral("/media")).isDir() ? QStringLiteral("/media") : QDir::homePath());
    dialog.selectFile(name);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString file = dialog.selectedFiles().constFirst();
    ui->pushButtonExport->setEnabled(false);
    m_pRecorder->Export(file, this, [this, file](QString const& error) { OnExported(file, error); });
}

void AlarmHistoryDialog::OnExported(QString const& file, QString const& error) {
    ui->pushButtonExport->setEnabled(true);
    if (!error.isEmpty())
        MarkLog::Instance()->ShowNote_Error(error);
    if (error.isEmpty())
        ShowMessage(text("已导出") + QStringLiteral(": ") + QFileInfo(file).fileName(), false);
    else
        ShowMessage(text("导出失败") + QStringLiteral(": ") + error, true);
}

void AlarmHistoryDialog::ShowMessage(QString const& message, bool bad) {
    ui->labelMessage->setStyleSheet(bad ? QStringLiteral("color:#b00020") : QString());
    ui->labelMessage->setText(message);
    ui->labelMessage->setToolTip(message);
}

void AlarmHistoryDialog::ShowStoreState(QString const& error) {
    if (!error.isEmpty())
        ShowMessage(text("报警记录无法保存到磁盘"), true);
    else
        ShowMessage(QString(), false);
}

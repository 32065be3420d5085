// SPDX-License-Identifier: MIT
#include "files/form_showimportinfo.h"

#include "engine/languagemanager.h"
#include "ui_form_showimportinfo.h"

#include <QFormLayout>
#include <QLabel>
#include <array>

namespace {

constexpr std::array<char const*, 9> kCaptions = {"校正数据行列数为:",
                                                  "未识别的错误数据行数:",
                                                  "偏差值越界行数:",
                                                  "没有数据的空行数:",
                                                  "是否缺少数据:",
                                                  "测量中心偏移量:",
                                                  "自动计算中校正错误排序行数:",
                                                  "外部手动高精度数据导入结果:",
                                                  "最大偏差数据:"};

} // namespace

Form_ShowImportInfo::Form_ShowImportInfo(QWidget* parent, QString const& rows, QString const& unknownLines,
                                         QString const& outOfRange, QString const& emptyLines, QString const& missing,
                                         QString const& centreOffset, QString const& reordered, QString const& result,
                                         QString const& largestDeviation)
    : QDialog(parent, Qt::Tool | Qt::WindowStaysOnTopHint)
    , ui(std::make_unique<Ui_Form_ShowImportInfo>()) {
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(LanguageManager::GetLanText("手动高精度文件导入信息显示"));
    const std::array<QString const*, 9> values = {&rows,         &unknownLines, &outOfRange, &emptyLines,      &missing,
                                                  &centreOffset, &reordered,    &result,     &largestDeviation};
    for (std::size_t i = 0; i < values.size(); ++i) {
        auto* caption = new QLabel(LanguageManager::GetLanText(kCaptions[i]), this);
        caption->setObjectName(QStringLiteral("labelCaption%1").arg(i + 1));
        auto* value = new QLabel(*values[i], this);
        value->setObjectName(QStringLiteral("labelValue%1").arg(i + 1));
        value->setTextFormat(Qt::PlainText);
        value->setWordWrap(true);
        ui->layoutValues->addRow(caption, value);
    }
    ui->pushButtonOK->setText(LanguageManager::GetLanText("确定"));
    connect(ui->pushButtonOK, &QPushButton::clicked, this, &Form_ShowImportInfo::close);
}

Form_ShowImportInfo::~Form_ShowImportInfo() = default;

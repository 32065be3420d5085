// SPDX-License-Identifier: MIT
#include "editing/testgriddialog.h"

#include "engine/languagemanager.h"
#include "engine/marktypes.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

using tessera::GridAxis;
using tessera::GridFault;
using tessera::GridQuantity;
using tessera::TestGrid;

namespace {

constexpr int kTouch = 40; ///< px
constexpr double kMostValue = 1.0e7;
constexpr double kMostLength = 1000.0; ///< mm
constexpr double kLeastPitch = 0.005;  ///< mm, finer than any spot

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

TestGridDialog::TestGridDialog(int freePens, QRectF const& field, bool kiloHertz, QWidget* parent)
    : QDialog(parent)
    , m_FreePens(freePens)
    , m_Field(field)
    , m_pState(new QLabel)
    , m_pDraw(new QPushButton(text("确定"))) {
    setObjectName(QStringLiteral("TestGridDialog"));
    setWindowTitle(text("测试网格"));
    auto* layout = new QGridLayout(this);
    const TestGrid delivered;
    layout->addWidget(new QLabel(text("从")), 0, 2);
    layout->addWidget(new QLabel(text("到")), 0, 3);
    layout->addWidget(new QLabel(text("个数")), 0, 4);
    m_Columns = AddAxis(layout, 1, "列", "Columns", delivered.columns);
    m_Rows = AddAxis(layout, 2, "行", "Rows", delivered.rows);
    for (AxisRow const& row : {m_Columns, m_Rows})
        row.quantity->setItemText(2, text("频率") + (kiloHertz ? QStringLiteral(" KHz") : QStringLiteral(" Hz")));
    m_pSize = AddLength(layout, 3, "方格边长", "doubleSpinBoxSize", delivered.size, 0.5, 2);
    m_pGap = AddLength(layout, 4, "方格间距", "doubleSpinBoxGap", delivered.gap, 0.0, 2);
    m_pPitch = AddLength(layout, 5, "填充间距", "doubleSpinBoxPitch", delivered.pitch, kLeastPitch, 3);
    m_pState->setObjectName(QStringLiteral("labelState"));
    m_pState->setWordWrap(true);
    layout->addWidget(m_pState, 6, 0, 1, 5);
    auto* buttons = new QHBoxLayout;
    auto* cancel = new QPushButton(text("取消"));
    m_pDraw->setObjectName(QStringLiteral("pushButtonDraw"));
    cancel->setObjectName(QStringLiteral("pushButtonCancel"));
    buttons->addStretch();
    for (QPushButton* button : {m_pDraw, cancel}) {
        button->setMinimumSize(110, kTouch);
        buttons->addWidget(button);
    }
    layout->addLayout(buttons, 7, 0, 1, 5);
    connect(m_pDraw, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    ShowState();
}

TestGridDialog::AxisRow TestGridDialog::AddAxis(QGridLayout* layout, int row, char const* key, char const* name,
                                                GridAxis const& axis) {
    const QString id = QString::fromLatin1(name);
    AxisRow made{new QComboBox, new QDoubleSpinBox, new QDoubleSpinBox, new QSpinBox};
    made.quantity->setObjectName(QStringLiteral("comboBox") + id);
    for (QString const& quantity :
         {text("功率") + QStringLiteral(" %"), text("工作速度") + QStringLiteral(" mm/s"), text("频率")})
        made.quantity->addItem(quantity);
    made.quantity->setCurrentIndex(static_cast<int>(axis.quantity));
    made.from->setObjectName(QStringLiteral("doubleSpinBoxFrom") + id);
    made.to->setObjectName(QStringLiteral("doubleSpinBoxTo") + id);
    made.count->setObjectName(QStringLiteral("spinBoxCount") + id);
    made.count->setRange(1, kLayerCount);
    made.count->setValue(axis.count);
    layout->addWidget(new QLabel(text(key)), row, 0);
    layout->addWidget(made.quantity, row, 1);
    layout->addWidget(made.from, row, 2);
    layout->addWidget(made.to, row, 3);
    layout->addWidget(made.count, row, 4);
    // The limits are those of the pens.
    const auto limit = [made] {
        const bool power = made.quantity->currentIndex() == static_cast<int>(GridQuantity::Power);
        made.from->setRange(0.0, power ? 100.0 : kMostValue);
        made.to->setRange(0.0, power ? 100.0 : kMostValue);
    };
    limit();
    made.from->setValue(axis.from);
    made.to->setValue(axis.to);
    connect(made.quantity, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this, limit] {
        limit();
        ShowState();
    });
    connect(made.count, QOverload<int>::of(&QSpinBox::valueChanged), this, &TestGridDialog::ShowState);
    return made;
}

QDoubleSpinBox* TestGridDialog::AddLength(QGridLayout* layout, int row, char const* key, char const* name, double value,
                                          double least, int decimals) {
    auto* box = new QDoubleSpinBox;
    box->setObjectName(QString::fromLatin1(name));
    box->setDecimals(decimals);
    box->setRange(least, kMostLength);
    box->setSuffix(QStringLiteral(" mm"));
    box->setValue(value);
    layout->addWidget(new QLabel(text(key)), row, 0);
    layout->addWidget(box, row, 1);
    connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &TestGridDialog::ShowState);
    return box;
}

GridAxis TestGridDialog::Axis(AxisRow const& row) const {
    return {static_cast<GridQuantity>(row.quantity->currentIndex()), row.from->value(), row.to->value(),
            row.count->value()};
}

TestGrid TestGridDialog::Grid() const {
    TestGrid grid;
    grid.columns = Axis(m_Columns);
    grid.rows = Axis(m_Rows);
    grid.size = m_pSize->value();
    grid.gap = m_pGap->value();
    grid.pitch = m_pPitch->value();
    return grid;
}

QString TestGridDialog::Message() const {
    const TestGrid grid = Grid();
    const QSizeF size = tessera::GridSize(grid);
    switch (tessera::CheckGrid(grid, m_FreePens, m_Field)) {
    case GridFault::SameQuantity:
        return text("行和列不能是同一个参数");
    case GridFault::TooFewPens:
        return text("笔不够,需要/空闲") + QStringLiteral(": %1 / %2").arg(grid.PensNeeded()).arg(m_FreePens);
    case GridFault::TooLarge:
        return text("超出幅面") + QStringLiteral(": %1 x %2 mm, %3 x %4 mm")
                                      .arg(size.width())
                                      .arg(size.height())
                                      .arg(m_Field.width())
                                      .arg(m_Field.height());
    case GridFault::None:
        break;
    }
    return text("需要的笔数/空闲") +
           QStringLiteral(": %1 / %2, %3 x %4 mm\n")
               .arg(grid.PensNeeded())
               .arg(m_FreePens)
               .arg(size.width())
               .arg(size.height()) +
           text("撤销只撤去图形,笔的参数保留");
}

void TestGridDialog::ShowState() {
    if (!m_pPitch)
        return;
    m_pState->setText(Message());
    m_pDraw->setEnabled(tessera::CheckGrid(Grid(), m_FreePens, m_Field) == GridFault::None);
}

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/filecopybehavior.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr int kOverwrite = 0;
constexpr int kRename = 1;
/// Most bytes of a name: the file system takes 255, and an ending and the mark of a file being written come on top.
constexpr int kMostNameBytes = 200;

/// A file of a folder can have the name, and an operator can read it.
bool isFileName(QString const& name) {
    bool const readable = std::all_of(name.begin(), name.end(), [](QChar c) { return c.isPrint(); });
    return readable && !name.contains(QLatin1Char('/')) && name != QLatin1String(".") && name != QLatin1String("..") &&
           name.toUtf8().size() <= kMostNameBytes;
}

bool isFree(QString const& name, QVector<QString> const& taken) {
    for (QString const& other : taken) {
        if (other.compare(name, Qt::CaseInsensitive) == 0)
            return false;
    }
    return true;
}

/// The name with the first number behind it that is free.
QString freeName(QString const& name, QVector<QString> const& taken) {
    QString proposal = name;
    for (int i = 1; !isFree(proposal, taken); ++i)
        proposal = QStringLiteral("%1_%2").arg(name).arg(i);
    return proposal;
}

template<typename Button>
Button* makeChoice(char const* key, char const* objectName, QWidget* parent) {
    auto* button = new Button(LanguageManager::GetLanText(key), parent);
    button->setObjectName(QString::fromLatin1(objectName));
    button->setMinimumHeight(sim::kTouchHeight);
    return button;
}

} // namespace

struct FileCopyBehavior::Private {
    QString name;
    QVector<QString> taken;
    QRadioButton* overwrite = nullptr;
    QRadioButton* rename = nullptr;
    QLineEdit* newName = nullptr;
    QLabel* fault = nullptr;
    QCheckBox* all = nullptr;

    /// Key of what is wrong with the chosen name, null when it can be used.
    char const* nameFault() const;
};

char const* FileCopyBehavior::Private::nameFault() const {
    QString const typed = newName->text().trimmed();
    if (typed.isEmpty())
        return "请输入文档名字";
    if (!isFileName(typed))
        return "请输入正确的文件名";
    return isFree(typed, taken) ? nullptr : "文件名已存在";
}

FileCopyBehavior::FileCopyBehavior(QString const& text, QString const& name, QVector<QString> const& taken,
                                   QWidget* parent)
    : QDialog(parent)
    , d(std::make_unique<Private>()) {
    setObjectName(QStringLiteral("FileCopyBehavior"));
    sim::prepareDialog(this, LanguageManager::GetLanText("文件已存在"));
    d->name = name;
    d->taken = taken;
    auto* message = new QLabel(text, this);
    message->setObjectName(QStringLiteral("labelText"));
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    d->overwrite = makeChoice<QRadioButton>("覆盖", "radioButtonOverwrite", this);
    d->rename = makeChoice<QRadioButton>("重命名", "radioButtonRename", this);
    d->overwrite->setChecked(true);
    d->newName = new QLineEdit(freeName(name, taken), this);
    d->newName->setObjectName(QStringLiteral("lineEditName"));
    d->newName->setMinimumHeight(sim::kTouchHeight);
    d->newName->setEnabled(false);
    d->fault = new QLabel(this);
    d->fault->setObjectName(QStringLiteral("labelFault"));
    d->fault->setStyleSheet(QStringLiteral("color: red"));
    d->all = makeChoice<QCheckBox>("应用到所有", "checkBoxApplyAll", this);
    sim::ButtonRow const buttons = sim::makeOkCancel(this);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* widget :
         {static_cast<QWidget*>(message), static_cast<QWidget*>(d->overwrite), static_cast<QWidget*>(d->rename),
          static_cast<QWidget*>(d->newName), static_cast<QWidget*>(d->fault), static_cast<QWidget*>(d->all)})
        layout->addWidget(widget);
    layout->addLayout(buttons.layout);
    connect(d->rename, &QRadioButton::toggled, d->newName, &QLineEdit::setEnabled);
    connect(d->newName, &QLineEdit::textChanged, d->fault, &QLabel::clear);
    connect(buttons.ok, &QPushButton::clicked, this, [this] {
        char const* fault = Operator() == kRename ? d->nameFault() : nullptr;
        if (fault)
            d->fault->setText(LanguageManager::GetLanText(fault));
        else
            accept();
    });
}

FileCopyBehavior::~FileCopyBehavior() = default;

bool FileCopyBehavior::ApplyAll() const {
    return d->all->isChecked();
}

int FileCopyBehavior::Operator() const {
    return d->rename->isChecked() ? kRename : kOverwrite;
}

QString FileCopyBehavior::FileName() const {
    return Operator() == kRename ? d->newName->text().trimmed() : d->name;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QDialog>
#include <QString>
#include <QVector>
#include <memory>

/// Asks what to do with a file that exists already: overwrite it or copy under another name. Main thread.
class ENGINE_API FileCopyBehavior : public QDialog {
    Q_OBJECT
public:
    /// `text` tells what exists, `name` is proposed, `taken` are the names that a rename may not use.
    FileCopyBehavior(QString const& text, QString const& name, QVector<QString> const& taken, QWidget* parent);
    ~FileCopyBehavior() override;
    bool ApplyAll() const;
    /// 0 overwrite, 1 rename.
    int Operator() const;
    QString FileName() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>

namespace tessera {

/// One file to be copied; both paths are relative to the folders that are merged.
struct MergeStep {
    QString from;
    QString to;
};

/// What the operator answers for a name that is there already. A plain value.
struct MergeAnswer {
    bool accepted = false;
    bool applyAll = false;
    int operation = 0; ///< 0 overwrite, 1 rename
    QString name;      ///< the new one with a rename
};

/// Asks about `name`; `text` tells what exists, `taken` are the names that a rename may not use.
using MergeAsk = std::function<MergeAnswer(QString const& text, QString const& name, QVector<QString> const& taken)>;

/// Which files are copied where when the mark documents `source` are merged into `target`, both without extension: the
/// documents first, then projects. The project pass walks the names of the documents and judges conflicts by them too:
/// a project comes over only beside a document of its name.
QVector<MergeStep> PlanMerge(QStringList const& source, QStringList const& target, MergeAsk const& ask);

} // namespace tessera

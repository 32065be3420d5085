// SPDX-License-Identifier: MIT
#include "files/markfilemerge.h"

#include "engine/languagemanager.h"

#include <QSet>

namespace tessera {
namespace {

constexpr int kRename = 1;

struct Pass {
    QString folder; // with "/" at its end, or empty
    QString extension;
    QString text;
};

/// What goes on from one file, and from one pass, to the next.
class Planner {
public:
    Planner(QStringList const& source, QStringList const& target, MergeAsk const& ask)
        : m_Source(source)
        , m_Target(target)
        , m_TargetNames(target.begin(), target.end())
        , m_Ask(ask) {}

    void Add(Pass const& pass, QVector<MergeStep>& steps) {
        m_Renamed.clear();
        for (QString const& name : m_Source) {
            const QString to = m_TargetNames.contains(name) ? Decide(pass, name) : name;
            steps.append({pass.folder + name + pass.extension, pass.folder + to + pass.extension});
        }
    }

private:
    /// The name under which a file is copied that is there already. A rename asks for each file, since each needs a
    /// name of its own.
    QString Decide(Pass const& pass, QString const& name) {
        if (m_Operation == kRename || !m_ApplyAll) {
            const MergeAnswer answer = m_Ask(pass.text + name, name, Taken());
            m_ApplyAll = answer.accepted && answer.applyAll;
            m_Operation = answer.accepted ? answer.operation : 0;
            m_Name = answer.name;
        }
        if (m_Operation != kRename)
            return name;
        m_Renamed.append(m_Name);
        return m_Name;
    }

    /// Beside the names that are there those that this pass gives too, so that no file overwrites one just copied.
    QVector<QString> Taken() const {
        QVector<QString> taken = m_Target.toVector();
        for (QString const& name : m_Source) {
            if (!m_TargetNames.contains(name))
                taken.append(name);
        }
        return taken + m_Renamed;
    }

    const QStringList m_Source;
    const QStringList m_Target;
    const QSet<QString> m_TargetNames;
    const MergeAsk m_Ask;
    bool m_ApplyAll = false;
    int m_Operation = 0;
    QString m_Name;
    QVector<QString> m_Renamed;
};

} // namespace

QVector<MergeStep> PlanMerge(QStringList const& source, QStringList const& target, MergeAsk const& ask) {
    QVector<MergeStep> steps;
    Planner planner(source, target, ask);
    planner.Add({QString(), QStringLiteral(".mkf"), LanguageManager::GetLanText("打标文件已存在: ")}, steps);
    planner.Add({QStringLiteral("MultiDocMarkFile/"), QStringLiteral(".mdf"),
                 LanguageManager::GetLanText("多文档打标文件已存在: ")},
                steps);
    return steps;
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "automation/objectfinder.h"

#include <QApplication>
#include <QMainWindow>
#include <QWidget>
#include <algorithm>
#include <cstdlib>

namespace tessera {

namespace {

constexpr int kMostCandidates = 50;
constexpr int kMostSimilar = 20;

QString className(QObject const* object) {
    return QString::fromLatin1(object->metaObject()->className());
}

/// Name of an object as one element of a full path.
QString element(QObject const* object) {
    QString const name = ObjectFinder::nameOf(object);
    if (!object->parent())
        return name;
    int same = 0;
    int index = 0;
    for (QObject const* sibling : object->parent()->children()) {
        if (sibling == object)
            index = same;
        if (ObjectFinder::nameOf(sibling) == name)
            ++same;
    }
    return same > 1 ? QStringLiteral("%1[%2]").arg(name).arg(index) : name;
}

bool matchesElement(QObject const* object, QString const& wanted) {
    if (wanted.endsWith(QLatin1Char(']')))
        return element(object) == wanted;
    return object->objectName() == wanted || className(object) == wanted;
}

/// Whether the ancestors of `object` hold `elements` in their order, the last element being the nearest.
bool ancestorsMatch(QObject const* object, QStringList const& elements) {
    int left = elements.size();
    for (QObject const* ancestor = object->parent(); ancestor && left > 0; ancestor = ancestor->parent()) {
        if (matchesElement(ancestor, elements.at(left - 1)))
            --left;
    }
    return left == 0;
}

QVector<QObject*> everything(QVector<QObject*> const& roots) {
    QVector<QObject*> all;
    for (QObject* root : roots) {
        all.append(root);
        for (QObject* child : root->findChildren<QObject*>())
            all.append(child);
    }
    return all;
}

/// Single-character edits between two names; more than `most` of them are given as most + 1. What a client sends may be
/// far longer than a name, so what cannot come near is not compared.
int editDistance(QString const& a, QString const& b, int most) {
    if (std::abs(a.size() - b.size()) > most)
        return most + 1;
    QVector<int> row(b.size() + 1);
    for (int j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (int i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            int const replaced = diagonal + (a.at(i - 1) == b.at(j - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.last();
}

/// Full paths of the objects whose names come nearest to `wanted`, the nearest first; none when none comes near.
QStringList similar(QString const& wanted, QVector<QObject*> const& all) {
    struct Near {
        int distance;
        QObject* object;
    };
    QVector<Near> near;
    QString const lower = wanted.toLower();
    int const most = std::max(2, lower.size() / 2);
    for (QObject* object : all) {
        QString const name =
            object->objectName().isEmpty() && object->isWidgetType() ? className(object) : object->objectName();
        if (name.isEmpty() || name.startsWith(QLatin1String("qt_")))
            continue;
        bool const contained = name.contains(lower, Qt::CaseInsensitive) || lower.contains(name.toLower());
        int const distance = contained ? 0 : editDistance(lower, name.toLower(), most);
        if (distance <= most)
            near.append({distance, object});
    }
    std::stable_sort(near.begin(), near.end(), [](Near const& a, Near const& b) { return a.distance < b.distance; });
    QStringList paths;
    for (int i = 0; i < near.size() && i < kMostSimilar; ++i)
        paths.append(ObjectFinder::fullPath(near.at(i).object));
    return paths;
}

/// What an unknown object is answered with: where to look is told even when no name comes near.
ObjectFinder::Found unknown(QString const& wanted, QVector<QObject*> const& all, QVector<QObject*> const& roots) {
    ObjectFinder::Found found;
    found.candidates = similar(wanted, all);
    for (int i = 0; found.candidates.size() < kMostSimilar && i < roots.size(); ++i) {
        QString const path = ObjectFinder::fullPath(roots.at(i));
        if (!found.candidates.contains(path))
            found.candidates.append(path);
    }
    return found;
}

ObjectFinder::Found oneOf(QVector<QObject*> const& matches) {
    ObjectFinder::Found found;
    if (matches.size() == 1) {
        found.object = matches.first();
        return found;
    }
    found.ambiguous = true;
    for (int i = 0; i < matches.size() && i < kMostCandidates; ++i)
        found.candidates.append(ObjectFinder::fullPath(matches.at(i)));
    return found;
}

} // namespace

QString ObjectFinder::nameOf(QObject const* object) {
    return object->objectName().isEmpty() ? className(object) : object->objectName();
}

QString ObjectFinder::fullPath(QObject const* object) {
    QStringList elements;
    for (; object; object = object->parent())
        elements.prepend(element(object));
    return elements.join(QLatin1Char('/'));
}

QVector<QObject*> ObjectFinder::windows() {
    QVector<QObject*> roots;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->parent())
            continue;
        if (qobject_cast<QMainWindow*>(window))
            roots.prepend(window);
        else
            roots.append(window);
    }
    return roots;
}

ObjectFinder::Found ObjectFinder::find(QString const& path) {
    return find(path, windows());
}

ObjectFinder::Found ObjectFinder::find(QString const& path, QVector<QObject*> const& roots) {
    QStringList elements = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QVector<QObject*> const all = everything(roots);
    if (elements.isEmpty())
        return unknown(QString(), {}, roots);
    QString const last = elements.takeLast();
    QVector<QObject*> exact;
    QVector<QObject*> byName;
    QVector<QObject*> byClass;
    for (QObject* object : all) {
        bool const indexed = last.endsWith(QLatin1Char(']')) && element(object) == last;
        bool const named = object->objectName() == last || indexed;
        if ((!named && className(object) != last) || !ancestorsMatch(object, elements))
            continue;
        if (fullPath(object) == path)
            exact.append(object);
        (named ? byName : byClass).append(object);
    }
    for (QVector<QObject*> const* matches : {&exact, &byName, &byClass}) {
        if (!matches->isEmpty())
            return oneOf(*matches);
    }
    return unknown(last, all, roots);
}

} // namespace tessera

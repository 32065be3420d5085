// SPDX-License-Identifier: MIT
#include "automation/objecttree.h"

#include "automation/hiddentext.h"
#include "automation/objectfinder.h"

#include <QAction>
#include <QWidget>

namespace tessera {

namespace {

/// Properties that hold what an operator reads on an object, the first that an object has counts.
constexpr char const* kTextProperties[] = {"text", "currentText", "plainText", "title", "windowTitle"};

QString textOf(QObject const* object) {
    for (char const* property : kTextProperties) {
        if (object->metaObject()->indexOfProperty(property) >= 0)
            return HiddenText::read(object, property).toString();
    }
    return QString();
}

bool isShown(QObject const* object) {
    return object->isWidgetType() || qobject_cast<QAction const*>(object);
}

QJsonObject describeOne(QObject const* object) {
    QJsonObject told = ObjectTree::describeAlone(object);
    QJsonArray children;
    for (QObject const* child : object->children()) {
        if (isShown(child))
            children.append(describeOne(child));
    }
    if (!children.isEmpty())
        told.insert(QStringLiteral("children"), children);
    return told;
}

} // namespace

QJsonObject ObjectTree::describeAlone(QObject const* object) {
    return {{QStringLiteral("name"), object->objectName()},
            {QStringLiteral("class"), QString::fromLatin1(object->metaObject()->className())},
            {QStringLiteral("path"), ObjectFinder::fullPath(object)},
            {QStringLiteral("visible"), object->property("visible").toBool()},
            {QStringLiteral("enabled"), object->property("enabled").toBool()},
            {QStringLiteral("text"), textOf(object)}};
}

QJsonArray ObjectTree::describe(QVector<QObject*> const& objects) {
    QJsonArray all;
    for (QObject const* object : objects)
        all.append(describeOne(object));
    return all;
}

} // namespace tessera

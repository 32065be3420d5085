// SPDX-License-Identifier: MIT
#include "automation/uimethods.h"

#include "automation/itemaccess.h"
#include "automation/objectfinder.h"
#include "automation/objecttree.h"
#include "automation/propertyjson.h"
#include "automation/widgetdriver.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QPointer>

namespace tessera {

namespace {

/// The object that a call names, or the error that answers it.
struct Target {
    QObject* object = nullptr;
    RpcReply failure;
};

Target targetOf(QString const& path) {
    Target target;
    ObjectFinder::Found const found = ObjectFinder::find(path);
    target.object = found.object;
    if (found.object)
        return target;
    QJsonObject const data{{QStringLiteral("candidates"), QJsonArray::fromStringList(found.candidates)}};
    if (found.ambiguous)
        target.failure = RpcReply::failure(
            RpcObjectAmbiguous, QStringLiteral("\"%1\" names several objects; give a longer path").arg(path), data);
    else
        target.failure = RpcReply::failure(RpcObjectNotFound, QStringLiteral("no object \"%1\"").arg(path), data);
    return target;
}

QString objectParam(QJsonObject const& params) {
    return params.value(QLatin1String("object")).toString();
}

Target widgetTarget(QString const& path) {
    Target target = targetOf(path);
    if (target.object && !target.object->isWidgetType()) {
        target.object = nullptr;
        target.failure = RpcReply::failure(RpcInvalidParams, QStringLiteral("\"%1\" is not a widget").arg(path));
    }
    return target;
}

RpcReply notUsable(QString const& path, QString const& why) {
    return RpcReply::failure(RpcObjectNotUsable, QStringLiteral("\"%1\" cannot be used: %2").arg(path, why));
}

template<typename Press>
RpcReply press(QJsonObject const& params, Press action) {
    QString const path = objectParam(params);
    Target const target = widgetTarget(path);
    if (!target.object)
        return target.failure;
    auto* widget = static_cast<QWidget*>(target.object);
    QString const why = WidgetDriver::whyNotUsable(widget);
    if (!why.isEmpty())
        return notUsable(path, why);
    return RpcReply::done([guard = QPointer<QWidget>(widget), action] {
        if (guard)
            action(guard.data());
    });
}

} // namespace

std::array<UiMethods::Row, 10> const& UiMethods::methods() {
    static constexpr RpcParameter kObject{"object", RpcType::Text, true};
    static constexpr RpcParameter kMaybeObject{"object", RpcType::Text, false};
    static constexpr RpcParameter kProperty{"property", RpcType::Text, true};
    static std::array<Row, 10> const rows{{
        {"ui.tree", {{kMaybeObject}}, &UiMethods::tree},
        {"ui.windows", {}, &UiMethods::windows},
        {"ui.click", {{kObject}}, &UiMethods::click},
        {"ui.doubleClick", {{kObject}}, &UiMethods::doubleClick},
        {"ui.trigger", {{{"action", RpcType::Text, true}}}, &UiMethods::trigger},
        {"ui.get", {{kObject, kProperty}}, &UiMethods::get},
        {"ui.set", {{kObject, kProperty, {"value", RpcType::Any, true}}}, &UiMethods::set},
        {"ui.item",
         {{kObject,
           {"row", RpcType::Index, true},
           {"column", RpcType::Index, false},
           {"select", RpcType::Switch, false}}},
         &UiMethods::item},
        {"ui.key", {{{"key", RpcType::Text, true}, kMaybeObject}}, &UiMethods::key},
        {"ui.screenshot", {{{"file", RpcType::Text, true}, kMaybeObject}}, &UiMethods::screenshot},
    }};
    return rows;
}

RpcReply UiMethods::tree(QJsonObject const& params) {
    if (!params.contains(QLatin1String("object")))
        return RpcReply::value(ObjectTree::describe(ObjectFinder::windows()));
    Target const target = targetOf(objectParam(params));
    if (!target.object)
        return target.failure;
    return RpcReply::value(ObjectTree::describe({target.object}));
}

RpcReply UiMethods::windows(QJsonObject const&) {
    QJsonArray visible;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            visible.append(ObjectTree::describeAlone(window));
    }
    return RpcReply::value(visible);
}

RpcReply UiMethods::click(QJsonObject const& params) {
    return press(params, &WidgetDriver::click);
}

RpcReply UiMethods::doubleClick(QJsonObject const& params) {
    return press(params, &WidgetDriver::doubleClick);
}

RpcReply UiMethods::trigger(QJsonObject const& params) {
    QString const path = params.value(QLatin1String("action")).toString();
    Target const target = targetOf(path);
    if (!target.object)
        return target.failure;
    auto* action = qobject_cast<QAction*>(target.object);
    if (!action)
        return RpcReply::failure(RpcInvalidParams, QStringLiteral("\"%1\" is not an action").arg(path));
    QString const why = WidgetDriver::whyNotUsable(action);
    if (!why.isEmpty())
        return notUsable(path, why);
    return RpcReply::done([guard = QPointer<QAction>(action)] {
        if (guard)
            guard->trigger();
    });
}

RpcReply UiMethods::get(QJsonObject const& params) {
    Target const target = targetOf(objectParam(params));
    if (!target.object)
        return target.failure;
    QJsonValue value;
    QString error;
    if (!PropertyJson::read(target.object, params.value(QLatin1String("property")).toString(), value, error))
        return RpcReply::failure(RpcInvalidParams, error);
    return RpcReply::value(value);
}

RpcReply UiMethods::set(QJsonObject const& params) {
    Target const target = targetOf(objectParam(params));
    if (!target.object)
        return target.failure;
    QString const property = params.value(QLatin1String("property")).toString();
    QVariant value;
    QString error;
    if (!PropertyJson::prepare(target.object, property, params.value(QLatin1String("value")), value, error))
        return RpcReply::failure(RpcInvalidParams, error);
    return RpcReply::done([guard = QPointer<QObject>(target.object), name = property.toLatin1(), value] {
        if (guard)
            guard->setProperty(name.constData(), value);
    });
}

RpcReply UiMethods::item(QJsonObject const& params) {
    QString const path = objectParam(params);
    Target const target = targetOf(path);
    if (!target.object)
        return target.failure;
    ItemAccess const items(target.object);
    if (!items.isValid())
        return RpcReply::failure(RpcInvalidParams, QStringLiteral("\"%1\" holds no items").arg(path));
    int const row = params.value(QLatin1String("row")).toInt();
    int const column = params.value(QLatin1String("column")).toInt();
    if (row >= items.rows() || column >= items.columns())
        return RpcReply::failure(RpcInvalidParams,
                                 QStringLiteral("row %1, column %2 is outside of %3 rows and %4 columns")
                                     .arg(row)
                                     .arg(column)
                                     .arg(items.rows())
                                     .arg(items.columns()));
    RpcReply reply = RpcReply::value(QJsonObject{{QStringLiteral("text"), items.text(row, column)},
                                                 {QStringLiteral("rows"), items.rows()},
                                                 {QStringLiteral("columns"), items.columns()}});
    if (!params.value(QLatin1String("select")).toBool())
        return reply;
    auto const* widget = qobject_cast<QWidget*>(target.object);
    QString const why = widget ? WidgetDriver::whyNotUsable(widget) : QString();
    if (!why.isEmpty())
        return notUsable(path, why);
    reply.afterwards = [guard = QPointer<QObject>(target.object), row, column] {
        if (guard)
            ItemAccess(guard.data()).select(row, column);
    };
    return reply;
}

RpcReply UiMethods::key(QJsonObject const& params) {
    QString const name = params.value(QLatin1String("key")).toString();
    KeyPress const press = KeyPress::fromName(name);
    if (press.key == 0)
        return RpcReply::failure(RpcInvalidParams, QStringLiteral("no key \"%1\"; give a Qt::Key name").arg(name));
    QWidget* receiver = nullptr;
    if (params.contains(QLatin1String("object"))) {
        QString const path = objectParam(params);
        Target const target = widgetTarget(path);
        if (!target.object)
            return target.failure;
        receiver = static_cast<QWidget*>(target.object);
        QString const why = WidgetDriver::whyNotUsable(receiver);
        if (!why.isEmpty())
            return notUsable(path, why);
    } else {
        receiver = WidgetDriver::keyReceiver();
    }
    if (!receiver)
        return RpcReply::failure(RpcObjectNotUsable, QStringLiteral("no window takes keys"));
    return RpcReply::done([guard = QPointer<QWidget>(receiver), press] {
        if (guard)
            WidgetDriver::pressKey(guard.data(), press);
    });
}

RpcReply UiMethods::screenshot(QJsonObject const& params) {
    QImage image;
    if (params.contains(QLatin1String("object"))) {
        Target const target = widgetTarget(objectParam(params));
        if (!target.object)
            return target.failure;
        image = WidgetDriver::picture(static_cast<QWidget*>(target.object));
    } else {
        image = WidgetDriver::pictureOfScreen();
    }
    QString const file = QFileInfo(params.value(QLatin1String("file")).toString()).absoluteFilePath();
    QString error;
    if (!WidgetDriver::writePicture(image, file, error))
        return RpcReply::failure(RpcFileError, error);
    return RpcReply::value(QJsonObject{{QStringLiteral("file"), file},
                                       {QStringLiteral("width"), image.width()},
                                       {QStringLiteral("height"), image.height()}});
}

} // namespace tessera

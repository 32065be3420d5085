// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/document/document.h"

#include <QByteArray>

/// Objects and documents that the tests of this folder share.
namespace samples {

sim::ObjectPtr object(sim::Shape shape, const QTransform& transform = {}, int pen = 0);
sim::ObjectPtr point(double x, double y);
sim::ObjectPtr line(const QVector<QPointF>& points, bool closed = false);
sim::ObjectPtr rect(double x, double y, double width, double height);
sim::ObjectPtr circle(double x, double y, double radius);
sim::ObjectPtr arc(double x, double y, double radius, double start, double sweep);
/// A line, a curve and a closed triangle beside them.
sim::ObjectPtr path();
sim::ObjectPtr group(const sim::ObjectList& children);

/// A text in a single-line font.
sim::ObjectPtr text(const QString& characters, double height = 5.0);

/// What a tool module may have made: a triangle with one curved side.
sim::ObjectPtr generated(const QByteArray& parameters = QByteArrayLiteral("r=5"));

/// One object of every kind, all fields away from their defaults.
sim::ObjectList everyKind();
/// A document of everyKind() with pens and settings away from their defaults.
sim::DocumentContent fullContent();

/// The bytes of the document's file: equal bytes are an equal document.
QByteArray bytesOf(const sim::Document& document);

/// A state of the objects with the given ones selected.
sim::DocumentState state(const sim::ObjectList& objects, const QList<int>& selected);

} // namespace samples

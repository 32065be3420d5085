// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QColor>

/// Colours of the drawing view. Quiet greys and one accent: the pens' own colours carry the drawing, and green, yellow
/// and red belong to the machine's state.
namespace sim::theme {

constexpr QRgb kSurround = 0xffe4e8ed;   ///< outside the canvas
constexpr QRgb kCanvas = 0xffffffff;     ///< the field that can be marked
constexpr QRgb kCanvasEdge = 0xff8795a3; ///< its outline
constexpr QRgb kGridMinor = 0xfff0f3f6;
constexpr QRgb kGridMajor = 0xffdfe5eb;
constexpr QRgb kAxis = 0xffa9b6c3; ///< cross through the field centre
constexpr QRgb kRuler = 0xfff7f9fb;
constexpr QRgb kRulerEdge = 0xffcbd3db;
constexpr QRgb kRulerTick = 0xff7c8894;
constexpr QRgb kRulerText = 0xff3d4852;
constexpr QRgb kAccent = 0xff0a6cd6;     ///< selection, handles, cursor marks
constexpr QRgb kAccentSoft = 0x300a6cd6; ///< inside of the rubber band
constexpr QRgb kAccentHalo = 0x500a6cd6; ///< around selected lines
constexpr QRgb kCrossing = 0xff7a4fc0;   ///< rubber band that takes what it touches
constexpr QRgb kCrossingSoft = 0x307a4fc0;
constexpr QRgb kHover = 0xff62a5e8;
constexpr QRgb kSnap = 0xffc2188b;        ///< places and lines that something is drawn to
constexpr QRgb kRowSelected = 0xffe3eefb; ///< selected row of the object list
constexpr QRgb kPilot = 0xffd8203c;       ///< spot of the pilot beam, in its own colour
constexpr QRgb kFade = 0xb4ffffff;        ///< over the objects while their marking is shown
constexpr QRgb kNotWorking = 0xff9aa5b0;  ///< objects that are not marked

/// The pen's colour, darkened as far as it needs to stand out from the white canvas.
QColor onCanvas(const QColor& pen);

} // namespace sim::theme

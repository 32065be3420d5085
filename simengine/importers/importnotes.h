// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// What an import tells the operator.
enum class Note {
    // the whole file
    FileTooLarge,
    UnknownKind,
    NotSvg,
    NotDxf,
    NotPlt,
    BinaryDxf,
    XmlFault,
    CutOff,
    BadViewBox,
    NoSize,
    TooDeep,
    RefersToItself,
    TooManyElements,
    TooManyPoints,
    TooLong,
    BadNumber,
    NoMemory,
    TooMuchMemory,
    Unreadable,
    Encoding,
    // drawings in general
    NoLineNoArea,
    OutOfRange,
    SharedPen,
    AreaAsOutline,
    Gathered,
    Joined,
    Dashed,
    UnknownElement,
    Nothing,
    TextTooLong,
    // SVG
    Pictures,
    Masks,
    Effects,
    LineEnds,
    Patterns,
    Animations,
    ForeignContent,
    NotInText,
    LetterPlaces,
    TurnedLetters,
    LineShift,
    EmShift,
    RelativeFontSize,
    AfterPlacedLine,
    TextPath,
    Clipped,
    ClippedAway,
    BadReference,
    BadPath,
    BadTransform,
    Gradient,
    StyleRule,
    NotInClip,
    OtherReader,
    ManyAttributes,
    // DXF
    NoUnit,
    Hidden,
    FontReplaced,
    FontReplacedOutline,
    NoGlyph,
    FitPoints,
    Dimension,
    Infinite,
    HatchOutline,
    Flattened,
    Solid3d,
    MissingBlock,
    BlockAgain,
    LineWidth,
    TextFormat,
    Proxy,
    PaperSpace,
    Tilted,
    MeshOutline,
    Attribute,
    // PLT
    NoFrame,
    NoPenCommand,
    UnknownCommand,
    BadArguments,
    Tick
};

/// The note in the operator's language. Any thread.
QString noteText(Note note);

} // namespace sim

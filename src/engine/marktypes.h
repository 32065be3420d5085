// SPDX-License-Identifier: MIT
#pragma once

/// Enumerations of the boundary. The values are fixed: they are stored in files and sent to controlling stations.

/// Kind of a job.
enum MarkType {
    MarkTypeLaser = 0,        ///< normal marking with the laser
    MarkTypeRedPreview = 1,   ///< the pilot beam traces the job, no laser
    MarkTypeBorderPreview = 2 ///< the pilot beam goes round the job, on an outline of the engine's choice
};

/// Run state that a job on the card obeys.
enum MarkStatus {
    MarkStatusRun = 0,
    MarkStatusPause = 1,
    MarkStatusStop = 2 ///< also the idle state
};

/// State of the station as told to a controlling station.
enum RunStatus { RunStatusNormal = 0, RunStatusLaserAlarm = 3 };

/// What the next mouse press in a document view does.
enum OperatorOnView {
    OperatorSelect = 0,
    OperatorAddPluginTool = 10,
    OperatorAddPoint = 11,
    OperatorAddRect = 12,
    OperatorTeach = 13,
    OperatorAddLine = 15,
    OperatorAddCircle = 16,
    OperatorTeachCircle = 17,
    OperatorTeachArc = 18,
    OperatorZoomRegion = 19,
    OperatorAddText = 20
};

/// Axis of a mirror operation.
enum MirrorType { MirrorTopBottom = 0, MirrorLeftRight = 3 };

/// What a door or light curtain does to a running job; any value other than 0 pauses.
enum SafeTrigerType { SafeTrigerStop = 0, SafeTrigerPause = 1 };

/// Kind of a line for the status list and the debug window.
enum DebugInfoType { DebugInfoAlarm = 0, DebugInfoTrace = 2 };

/// Kind of a log entry.
enum NoteType {
    NoteLaserFailure = 3, ///< laser parameter failures
    NoteOperator = 4,     ///< operator actions
    NoteDebug = 5,        ///< debug traffic and start-up
    NoteParamEdit = 7,    ///< parameter edits
    NoteRun = 9           ///< run events
};

/// Series of the serial laser.
enum LayLaserType { LayLaserMSeries = 0, LayLaserPSeries = 1 };

/// Variant of a fibre laser, index of the four radio buttons of the laser selection.
enum FilberLaserType { FilberIPG20W = 0, FilberMOPA = 1, FilberYLPN = 2, FilberAPD = 3 };

/// Laser type of the machine. MarkCardYLR and MarkCardYLM form one family.
enum MarkCardType {
    MarkCardFilber = 0,
    MarkCardYLR = 1,
    MarkCardYAG = 2,
    MarkCardSPI = 3,
    MarkCardEP = 4,
    MarkCardYLM = 5
};

/// Number of pens (layers) of every document.
constexpr int kLayerCount = 20;

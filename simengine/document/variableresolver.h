// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"
#include "simengine/document/variablevalues.h"

namespace sim {

/// Objects with the present values of their variables.
struct ResolvedObjects {
    std::shared_ptr<const ObjectList> objects; ///< the very list that was given when no object shows anything else
    VariableProblem problem;                   ///< the first one
    QStringList uniqueCodes;                   ///< texts of codes that are meant to be marked once
};

/// Which objects are looked at.
enum class Resolve {
    Marked,   ///< of a run: those that are marked; it ends at the first problem
    Selected, ///< the same of a run of the selection
    All       ///< of a view: an object whose variables have no value goes on showing what it did
};

/// An object somewhere in the list has variables.
bool holdsVariables(const ObjectList& objects);
/// One has a variable whose text changes by itself.
bool followsClock(const ObjectList& objects);

/// Any thread; needs a QGuiApplication for texts in outline fonts.
ResolvedObjects resolveVariables(const DocumentState& state, Resolve which, VariableValues& values);

} // namespace sim

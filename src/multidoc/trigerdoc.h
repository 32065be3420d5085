// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// One entry of a multi-document project: a mark document and the pattern of the digital inputs that marks it. Bit n
/// stands for input n.
struct TrigerDoc {
    unsigned int m_nValue = 0; ///< wanted state of the watched inputs; has a meaning below the mask only
    unsigned int m_nMask = 0;  ///< inputs that are watched, at least one
    QString m_FileName;        ///< the document without folder and without ".mkf"

    /// Called on an entry that has just joined the project.
    void ResetDoc() {}
};

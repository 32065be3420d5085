// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QString>

namespace tessera {

/// A picture that is read when it is first to be drawn. An icon made of a file reads it at once, to know its size: with
/// a picture for every action that was a tenth of the time that the window takes to come up. Main thread.
QIcon LazyIcon(QString const& file);

} // namespace tessera

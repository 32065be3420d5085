// SPDX-License-Identifier: MIT
#pragma once

#include "support/durableresult.h"
#include "support/supportglobal.h"

#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

class QSettings;
class QTextCodec;

namespace tessera {

/// Settings in QSettings' ini format whose values must not be lost, such as counters.
/// The text is made by QSettings itself, so every QSettings reader sees it and all other keys are kept; it reaches the
/// file by writeFileDurably(). QSettings' own sync() would pass over a failed sync of the disk.
///
/// `path` should be absolute, keys are "section/key" as in QSettings. `codec` is for files that other programs keep in
/// an encoding of their own; without it text beyond Latin-1 is escaped, as QSettings does by default. Calls in this
/// process are put one after the other and QSettings' lock file keeps other QSettings writers out, so no change is lost
/// between them. A file with lines that are no settings is copied beside itself as "<path>.damaged" before the first
/// save, which drops such lines. Any thread.

/// Sets one value and keeps all others.
TESSERA_SUPPORT_EXPORT DurableResult writeSettingDurably(const QString& path, const QString& key, const QVariant& value,
                                                         QTextCodec* codec = nullptr);

/// Sets several values in one save: after a power cut either all are there or none.
TESSERA_SUPPORT_EXPORT DurableResult writeSettingsDurably(const QString& path,
                                                          const QVector<QPair<QString, QVariant>>& values,
                                                          QTextCodec* codec = nullptr);

/// The general form: `edit` changes a private copy of the settings, with groups, arrays or removals, and the result is
/// saved in one go. `edit` must not save settings itself. Fails, with the old file in place, when a value is of a type
/// that does not come back from ini text as it was put in.
TESSERA_SUPPORT_EXPORT DurableResult changeSettingsDurably(const QString& path,
                                                           const std::function<void(QSettings&)>& edit,
                                                           QTextCodec* codec = nullptr);

/// The value of `key`, as QSettings gives it: text for all simple types. `fallback` when the key or the file is not
/// there or the file cannot be read.
TESSERA_SUPPORT_EXPORT QVariant readSetting(const QString& path, const QString& key,
                                            const QVariant& fallback = QVariant(), QTextCodec* codec = nullptr);

} // namespace tessera

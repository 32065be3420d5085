// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>
#include <memory>

/// One ini file of sections and keys, UTF-8. Every write replaces the file: after a power cut it is the old or the new
/// one, and keys, comments and lines that are not written stay. A read gives what stands in the file now, whichever
/// object wrote it. A path that starts with / is taken as it is, any other is below the application directory. Any
/// thread.
class ENGINE_API ProfIniFile {
public:
    explicit ProfIniFile(QString const& path);
    ~ProfIniFile();
    QString GetPath() const;
    /// Gives the default when file, section or key is missing.
    QString Read(QString const& section, QString const& key, QString const& defaultValue) const;
    /// Likewise; a value that is not a number gives the default too.
    int ReadInt(QString const& section, QString const& key, int defaultValue) const;
    double ReadDouble(QString const& section, QString const& key, double defaultValue) const;
    /// False when the file could not be written.
    bool Write(QString const& section, QString const& key, QString const& value);
    bool WriteInt(QString const& section, QString const& key, int value);
    bool WriteDouble(QString const& section, QString const& key, double value);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// /ini/VZMarkPara.cfg
class ENGINE_API XProfIniFile_CardCfg {
public:
    static ProfIniFile* Instance();
};

/// /ini/Demarcate.ini
class ENGINE_API XProfIniFile_VZBOXINI {
public:
    static ProfIniFile* Instance();
};

/// /ini/GlassSystemPara.ini
class ENGINE_API XProfIniFile_GlassPara {
public:
    static ProfIniFile* Instance();
};

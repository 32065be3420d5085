// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/profinifile.h"

#include "simengine/params/inifile.h"
#include "support/approot.h"

struct ProfIniFile::Private {
    explicit Private(QString const& path)
        : file(path) {}
    sim::IniFile file;
};

ProfIniFile::ProfIniFile(QString const& path)
    : d(std::make_unique<Private>(path.startsWith(QLatin1Char('/')) ? path : tessera::rootPath(path))) {}

ProfIniFile::~ProfIniFile() = default;

QString ProfIniFile::GetPath() const {
    return d->file.path();
}

QString ProfIniFile::Read(QString const& section, QString const& key, QString const& defaultValue) const {
    return d->file.value(section, key).value_or(defaultValue);
}

int ProfIniFile::ReadInt(QString const& section, QString const& key, int defaultValue) const {
    return sim::iniInt(d->file.value(section, key).value_or(QString())).value_or(defaultValue);
}

double ProfIniFile::ReadDouble(QString const& section, QString const& key, double defaultValue) const {
    return sim::iniDouble(d->file.value(section, key).value_or(QString())).value_or(defaultValue);
}

bool ProfIniFile::Write(QString const& section, QString const& key, QString const& value) {
    return d->file.change([&](sim::IniDocument& document) { return document.setValue(section, key, value); });
}

bool ProfIniFile::WriteInt(QString const& section, QString const& key, int value) {
    return Write(section, key, QString::number(value));
}

bool ProfIniFile::WriteDouble(QString const& section, QString const& key, double value) {
    return Write(section, key, sim::iniNumber(value));
}

ProfIniFile* XProfIniFile_CardCfg::Instance() {
    static ProfIniFile file(tessera::rootPath(QStringLiteral("/ini/VZMarkPara.cfg")));
    return &file;
}

ProfIniFile* XProfIniFile_VZBOXINI::Instance() {
    static ProfIniFile file(tessera::rootPath(QStringLiteral("/ini/Demarcate.ini")));
    return &file;
}

ProfIniFile* XProfIniFile_GlassPara::Instance() {
    static ProfIniFile file(tessera::rootPath(QStringLiteral("/ini/GlassSystemPara.ini")));
    return &file;
}

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/class_cardpara.h"

#include "simengine/params/cardparatable.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"

namespace sim {

namespace {

QString sectionOf(char const* name, int slot) {
    return slot < 0 ? QString::fromUtf8(name) : QString::fromUtf8(name) + QString::number(slot);
}

/// Reads and writes fields of every kind that the tables know.
struct FieldReader {
    IniFile const& file;
    QString section;

    void operator()(char const* key, bool& field) const { field = iniInt(text(key)).value_or(field ? 1 : 0) != 0; }
    void operator()(char const* key, int& field) const { field = iniInt(text(key)).value_or(field); }
    void operator()(char const* key, double& field) const { field = iniDouble(text(key)).value_or(field); }
    void operator()(char const* key, QString& field) const {
        field = file.value(section, QString::fromUtf8(key)).value_or(field);
    }
    QString text(char const* key) const { return file.value(section, QString::fromUtf8(key)).value_or(QString()); }
};

struct FieldWriter {
    IniDocument& document;
    QString section;

    void operator()(char const* key, bool field) const { put(key, QString::number(field ? 1 : 0)); }
    void operator()(char const* key, int field) const { put(key, QString::number(field)); }
    void operator()(char const* key, double field) const { put(key, iniNumber(field)); }
    void operator()(char const* key, QString const& field) const { put(key, field); }
    void put(char const* key, QString const& value) const { document.setValue(section, QString::fromUtf8(key), value); }
};

template<typename Object, typename Fields, typename Visitor>
void visitFields(Object& object, Fields const& fields, Visitor const& visitor) {
    for (auto const& field : fields)
        std::visit([&](auto member) { visitor(field.key, object.*member); }, field.member);
}

} // namespace

void loadCardPara(Class_CardPara& para, IniFile const& file) {
    visitFields(para, kCardFields, FieldReader{file, sectionOf(kCardSection, -1)});
    for (int i = 0; i < kAxisSlots; ++i) {
        auto const slot = static_cast<std::size_t>(i);
        visitFields(para.Axis[slot], kAxisFields, FieldReader{file, sectionOf(kAxisSection, i)});
        visitFields(para.Home[slot], kHomeFields, FieldReader{file, sectionOf(kAxisSection, i)});
    }
    para.AxisCount = qBound(1, para.AxisCount, kAxisSlots);
}

void storeCardPara(Class_CardPara const& para, IniDocument& document) {
    visitFields(para, kCardFields, FieldWriter{document, sectionOf(kCardSection, -1)});
    for (int i = 0; i < kAxisSlots; ++i) {
        auto const slot = static_cast<std::size_t>(i);
        visitFields(para.Axis[slot], kAxisFields, FieldWriter{document, sectionOf(kAxisSection, i)});
        visitFields(para.Home[slot], kHomeFields, FieldWriter{document, sectionOf(kAxisSection, i)});
    }
}

namespace {

IniFile& cardParaFile() {
    static IniFile file(tessera::rootPath(QLatin1String(kCardParaFile)));
    return file;
}

} // namespace

} // namespace sim

Class_CardPara::Class_CardPara() {
    static char const* const kNames[kAxisSlots] = {"X", "Y", "Z", "A", "B", "C", "U", "V"};
    for (int i = 0; i < kAxisSlots; ++i) {
        auto const slot = static_cast<std::size_t>(i);
        Axis[slot].Name = QString::fromLatin1(kNames[i]);
        Axis[slot].MotorNo = i + 1;
        Home[slot].Order = i;
    }
}

Class_CardPara* Class_CardPara::Instance() {
    static Class_CardPara instance = [] {
        Class_CardPara loaded;
        sim::loadCardPara(loaded, sim::cardParaFile());
        return loaded;
    }();
    return &instance;
}

bool Class_CardPara::SaveParaData() const {
    return sim::cardParaFile().change([this](sim::IniDocument& document) {
        sim::storeCardPara(*this, document);
        return true;
    });
}

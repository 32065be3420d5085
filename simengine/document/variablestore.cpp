// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variablestore.h"

#include "engine/marklog.h"
#include "support/approot.h"
#include "support/durablefile.h"

#include <QFileInfo>

namespace sim {

namespace {

using Lock = std::lock_guard<std::mutex>;

const QString kPassSection = QStringLiteral("Pass");
const QString kPassOpen = QStringLiteral("Open");

/// Reads the values of one section, or writes them: both go over the same fields.
class FieldsReader {
public:
    FieldsReader(const IniFile& file, const QString& section, bool& sound)
        : m_file(file)
        , m_section(section)
        , m_sound(sound) {}

    void operator()(const char* key, QString& value) { value = text(key); }
    void operator()(const char* key, bool& value) { value = number(key, 0, 1) == 1; }
    void operator()(const char* key, int& value) {
        value = int(number(key, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    }
    void operator()(const char* key, qint64& value) { value = number(key, -kMostSerialValue, kMostSerialValue); }
    void operator()(const char* key, CounterEnd& value) { value = CounterEnd(number(key, 0, 1)); }
    void operator()(const char* key, CsvCoding& value) { value = CsvCoding(number(key, 0, 1)); }
    void operator()(const char* key, QChar& value) {
        const QString read = text(key);
        m_sound = m_sound && read.size() == 1;
        value = read.isEmpty() ? QChar() : read.at(0);
    }
    void operator()(const char* key, QDate& value) {
        const QString read = text(key);
        value = QDate::fromString(read, Qt::ISODate);
        m_sound = m_sound && (read.isEmpty() || value.isValid());
    }
    void operator()(const char* key, QTime& value) {
        value = QTime::fromString(text(key), QStringLiteral("HH:mm"));
        m_sound = m_sound && value.isValid();
    }

private:
    QString text(const char* key) {
        const std::optional<QString> read = m_file.value(m_section, QLatin1String(key));
        m_sound = m_sound && read;
        return read.value_or(QString());
    }
    qint64 number(const char* key, qint64 least, qint64 most) {
        bool good = false;
        const qint64 value = text(key).toLongLong(&good);
        m_sound = m_sound && good && value >= least && value <= most;
        return m_sound ? value : 0;
    }

    const IniFile& m_file;
    QString m_section;
    bool& m_sound;
};

class FieldsWriter {
public:
    FieldsWriter(IniDocument& document, const QString& section, bool& sound)
        : m_document(document)
        , m_section(section)
        , m_sound(sound) {}

    void operator()(const char* key, const QString& value) {
        m_sound = m_document.setValue(m_section, QLatin1String(key), value) && m_sound;
    }
    void operator()(const char* key, bool value) { (*this)(key, QString::number(value ? 1 : 0)); }
    void operator()(const char* key, int value) { (*this)(key, QString::number(value)); }
    void operator()(const char* key, qint64 value) { (*this)(key, QString::number(value)); }
    void operator()(const char* key, CounterEnd value) { (*this)(key, int(value)); }
    void operator()(const char* key, CsvCoding value) { (*this)(key, int(value)); }
    void operator()(const char* key, QChar value) { (*this)(key, QString(value)); }
    void operator()(const char* key, const QDate& value) {
        (*this)(key, value.isValid() ? value.toString(Qt::ISODate) : QString());
    }
    void operator()(const char* key, const QTime& value) { (*this)(key, value.toString(QStringLiteral("HH:mm"))); }

private:
    IniDocument& m_document;
    QString m_section;
    bool& m_sound;
};

template<class Serial, class Visitor>
void visitSerial(Serial& s, Visitor visit) {
    visit("Name", s.name);
    visit("First", s.first);
    visit("Last", s.last);
    visit("Step", s.step);
    visit("Digits", s.digits);
    visit("Radix", s.radix);
    visit("Repeat", s.repeat);
    visit("AtEnd", s.atEnd);
    visit("Daily", s.daily);
    visit("Value", s.value);
    visit("Marks", s.marks);
    visit("Ended", s.ended);
    visit("Day", s.day);
}

template<class Source, class Visitor>
void visitSource(Source& s, Visitor visit) {
    visit("Name", s.name);
    visit("File", s.file);
    visit("Separator", s.separator);
    visit("Coding", s.coding);
    visit("Header", s.header);
    visit("AtEnd", s.atEnd);
    visit("Row", s.row);
}

template<class ShiftType, class Visitor>
void visitShift(ShiftType& s, Visitor visit) {
    visit("Begin", s.begin);
    visit("Code", s.code);
}

QString numbered(const char* name, int index) {
    return QLatin1String(name) + QString::number(index);
}

template<class Item, class Visit>
void readItems(const IniFile& file, const char* list, const char* one, QVector<Item>& items, bool& sound, Visit visit) {
    int count = 0;
    FieldsReader(file, QLatin1String(list), sound)("Count", count);
    sound = sound && count >= 0 && count <= kMostVariables;
    for (int i = 0; i < count && sound; ++i) {
        Item item;
        visit(item, FieldsReader(file, numbered(one, i), sound));
        items.append(item);
    }
}

template<class Item, class Visit>
void writeItems(IniDocument& document, const char* list, const char* one, const QVector<Item>& items, bool& sound,
                Visit visit) {
    FieldsWriter(document, QLatin1String(list), sound)("Count", int(items.size()));
    for (int i = 0; i < items.size(); ++i)
        visit(items[i], FieldsWriter(document, numbered(one, i), sound));
}

/// Where a serial number or source stands, apart from how it counts.
bool sameState(const SerialNumber& a, const SerialNumber& b) {
    return a.value == b.value && a.marks == b.marks && a.ended == b.ended && a.day == b.day;
}

void takeState(SerialNumber& to, const SerialNumber& from) {
    to.value = from.value;
    to.marks = from.marks;
    to.ended = from.ended;
    to.day = from.day;
}

bool sameState(const CsvSource& a, const CsvSource& b) {
    return a.row == b.row;
}

void takeState(CsvSource& to, const CsvSource& from) {
    to.row = from.row;
}

template<class Counter, class Find>
void keepCounted(QVector<Counter>& wanted, Find opened, Find current) {
    for (Counter& counter : wanted) {
        const Counter* before = opened(counter.name);
        const Counter* now = current(counter.name);
        if (before && now && sameState(counter, *before))
            takeState(counter, *now);
    }
}

template<class Counter>
void moveOn(QVector<Counter>& counters, const QVector<CounterStep<Counter>>& steps) {
    for (Counter& counter : counters) {
        for (const CounterStep<Counter>& step : steps) {
            if (counter.name == step.before.name && sameState(counter, step.before))
                takeState(counter, step.after);
        }
    }
}

} // namespace

VariableStore& VariableStore::instance() {
    static VariableStore store;
    return store;
}

IniFile& VariableStore::file() const {
    const QString path = tessera::rootPath(QStringLiteral("/ini/Variables.ini"));
    if (!m_file || m_file->path() != path)
        m_file = std::make_unique<IniFile>(path);
    return *m_file;
}

bool VariableStore::isPassOpen() const {
    return file().value(kPassSection, kPassOpen) == QLatin1String("1");
}

VariableSet VariableStore::set(VariableProblem* problem) const {
    const Lock lock(m_mutex);
    VariableProblem own;
    return read(problem ? *problem : own);
}

VariableSet VariableStore::read(VariableProblem& problem) const {
    const IniFile& ini = file();
    VariableSet set;
    if (!QFileInfo::exists(ini.path()))
        return set;
    bool sound = true;
    readItems(ini, "Serials", "Serial", set.serials, sound, [](auto& s, auto visit) { visitSerial(s, visit); });
    readItems(ini, "Sources", "Source", set.sources, sound, [](auto& s, auto visit) { visitSource(s, visit); });
    readItems(ini, "Shifts", "Shift", set.shifts, sound, [](auto& s, auto visit) { visitShift(s, visit); });
    if (sound && !setFault(set))
        return set;
    problem = {VariableFault::BadDefinitions, ini.path()};
    return {};
}

/// A copy and no new name, so that the damaged file is in place until another one is.
bool VariableStore::keepDamaged() const {
    const QString path = file().path();
    const QString kept =
        path + QStringLiteral(".damaged-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString name = kept;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = QStringLiteral("%1-%2").arg(kept).arg(i);
    if (!tessera::copyFileDurably(path, name))
        return false;
    MarkLog::Instance()->ShowNote_Error(
        variableMessage({VariableFault::BadDefinitions, QStringLiteral("%1 -> %2").arg(path, name)}));
    return true;
}

bool VariableStore::write(const VariableSet& set, bool passOpen) {
    return file().change([&](IniDocument& document) {
        bool sound = true;
        document = IniDocument();
        writeItems(document, "Serials", "Serial", set.serials, sound,
                   [](auto& s, auto visit) { visitSerial(s, visit); });
        writeItems(document, "Sources", "Source", set.sources, sound,
                   [](auto& s, auto visit) { visitSource(s, visit); });
        writeItems(document, "Shifts", "Shift", set.shifts, sound, [](auto& s, auto visit) { visitShift(s, visit); });
        FieldsWriter(document, kPassSection, sound)("Open", passOpen);
        return sound;
    });
}

VariableProblem VariableStore::replace(const VariableSet& wanted, const VariableSet& opened, Damaged damaged) {
    VariableProblem problem;
    const VariableSet current = read(problem);
    if (!problem.ok() && damaged == Damaged::Stays)
        return problem;
    VariableSet merged = wanted;
    keepCounted<SerialNumber, std::function<const SerialNumber*(const QString&)>>(
        merged.serials, [&](const QString& name) { return opened.serial(name); },
        [&](const QString& name) { return current.serial(name); });
    keepCounted<CsvSource, std::function<const CsvSource*(const QString&)>>(
        merged.sources, [&](const QString& name) { return opened.source(name); },
        [&](const QString& name) { return current.source(name); });
    if (setFault(merged))
        return {VariableFault::BadDefinitions, QString()};
    const bool passOpen = isPassOpen();
    const bool kept = problem.ok() || keepDamaged();
    return kept && write(merged, passOpen) ? VariableProblem() : VariableProblem{VariableFault::NotWritten, QString()};
}

bool VariableStore::save(const VariableSet& wanted, const VariableSet& opened, Damaged damaged,
                         VariableProblem* problem) {
    VariableProblem found;
    {
        const Lock lock(m_mutex);
        found = replace(wanted, opened, damaged);
    }
    if (problem)
        *problem = found;
    if (!found.ok())
        return false;
    emit changed();
    return true;
}

bool VariableStore::beginPass(VariableProblem* problem) {
    const Lock lock(m_mutex);
    VariableProblem found;
    const VariableSet now = read(found);
    if (found.ok() && !write(now, true))
        found = {VariableFault::NotWritten, QString()};
    m_passOpen = found.ok();
    if (problem)
        *problem = found;
    return m_passOpen;
}

bool VariableStore::endPass(const UsedVariables& used, bool marked) {
    {
        const Lock lock(m_mutex);
        VariableProblem problem;
        VariableSet now = read(problem);
        if (!problem.ok())
            return false;
        if (marked) {
            moveOn(now.serials, used.serials);
            moveOn(now.sources, used.sources);
        }
        if (!write(now, false))
            return false;
        m_passOpen = false;
    }
    if (marked)
        emit changed();
    return true;
}

QString variableText(const QString& pattern, VariableProblem& problem) {
    const VariableSet set = VariableStore::instance().set(&problem);
    return problem.ok() ? VariableValues(set, QDateTime::currentDateTime()).text(pattern, problem) : QString();
}

bool VariableStore::wasInterrupted() const {
    const Lock lock(m_mutex);
    return !m_passOpen && isPassOpen();
}

} // namespace sim

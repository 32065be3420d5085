// SPDX-License-Identifier: MIT
#include "tests/support/temporaryroot.h"

#include "simengine/simcontrol.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>
#include <dlfcn.h>

namespace tests {
namespace {

const char rootVariable[] = "TESSERA_ROOT";

/// The simulated machine writes the times of runs on a thread of its own, a moment after the run.
void finishRecords() {
    auto finish = reinterpret_cast<sim::SimFinishRecordsFunction>(dlsym(RTLD_DEFAULT, sim::kSimFinishRecordsSymbol));
    if (finish)
        finish();
}

} // namespace

QString sourcePath(const QString& relative) {
    const QString root = qEnvironmentVariable("TESSERA_SOURCE_DIR", QStringLiteral(TESSERA_REPOSITORY));
    return QDir::cleanPath(root + QLatin1Char('/') + relative);
}

TemporaryRoot::TemporaryRoot(const QVector<SampleFile>& samples)
    : m_directory(QDir::tempPath() + QStringLiteral("/tessera-root-XXXXXX"))
    , m_formerDirectory(QDir::currentPath())
    , m_formerEnvironment(qgetenv(rootVariable))
    , m_hadEnvironment(qEnvironmentVariableIsSet(rootVariable)) {
    m_root = QFileInfo(m_directory.path()).canonicalFilePath();
    if (!m_directory.isValid() || !QDir::setCurrent(m_root)) {
        complain(QStringLiteral("no temporary root: %1").arg(m_directory.errorString()));
        return;
    }
    tessera::setApplicationRoot(m_root);
    qputenv(rootVariable, QFile::encodeName(m_root));
    for (const SampleFile& sample : samples)
        copyIn(sample);
}

TemporaryRoot::~TemporaryRoot() {
    finishRecords();
    tessera::setApplicationRoot(QString());
    if (m_hadEnvironment)
        qputenv(rootVariable, m_formerEnvironment);
    else
        qunsetenv(rootVariable);
    if (!QDir::setCurrent(m_formerDirectory))
        complain(QStringLiteral("the former current directory \"%1\" is gone").arg(m_formerDirectory));
    if (m_directory.isValid() && !m_directory.remove())
        complain(QStringLiteral("\"%1\" cannot be removed").arg(m_root));
}

QString TemporaryRoot::path(const QString& relative) const {
    return relative.isEmpty() ? m_root : QDir::cleanPath(m_root + QLatin1Char('/') + relative);
}

bool TemporaryRoot::copyIn(const SampleFile& sample) {
    const QString source = QFileInfo(sample.source).isAbsolute() ? sample.source : sourcePath(sample.source);
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return complain(QStringLiteral("\"%1\": %2").arg(source, file.errorString()));
    return write(sample.target, file.readAll());
}

bool TemporaryRoot::write(const QString& relative, const QByteArray& bytes) {
    const QString target = path(relative);
    QFile file(target);
    if (!QDir().mkpath(QFileInfo(target).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.flush())
        return complain(QStringLiteral("\"%1\": %2").arg(target, file.errorString()));
    return true;
}

QByteArray TemporaryRoot::read(const QString& relative) const {
    QFile file(path(relative));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    const QByteArray bytes = file.readAll();
    return bytes.isNull() ? QByteArray("") : bytes;
}

bool TemporaryRoot::exists(const QString& relative) const {
    return QFileInfo::exists(path(relative));
}

bool TemporaryRoot::complain(const QString& text) {
    m_valid = false;
    QTest::qFail(qPrintable(QStringLiteral("TemporaryRoot: ") + text), __FILE__, __LINE__);
    return false;
}

} // namespace tests

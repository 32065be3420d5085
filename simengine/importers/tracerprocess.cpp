// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracerprocess.h"

#include "engine/languagemanager.h"
#include "simengine/importers/tracewire.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <dlfcn.h>

namespace sim {

namespace {

/// How often a wait looks whether it was cancelled, ms.
constexpr int kLook = 20;

QString libraryFolder() {
    Dl_info info;
    if (dladdr(reinterpret_cast<const void*>(&libraryFolder), &info) == 0 || !info.dli_fname)
        return {};
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

constexpr char kTooLong[] = "图片处理超时,请降低分辨率或增大去斑点值";

/// The keys of the reasons that need nothing more.
const char* reasonOf(int code) {
    switch (code) {
    case wire::ExitNoImage:
        return "文件不是PNG、JPEG或BMP图片";
    case wire::ExitNoMemory:
        return "图片需要的内存过多,请降低分辨率或增大去斑点值";
    case wire::ExitManyCurves:
        return "图片细节过多,请降低分辨率或增大去斑点值";
    case wire::ExitNoFile:
        return "文件无法打开";
    case wire::ExitDamaged:
        return "图片文件已损坏";
    case wire::ExitTooLong:
        return kTooLong;
    case wire::ExitManyPixels:
        return "图片过大,最多5000万像素";
    default:
        return "图片无法处理";
    }
}

} // namespace

QString tracerProgram() {
    const QString name = QStringLiteral("/tessera-imagetrace");
    const QString folder = libraryFolder();
    for (const QString& place : {folder, folder + QStringLiteral("/../bin"), QCoreApplication::applicationDirPath()}) {
        const QFileInfo program(place + name);
        if (program.isExecutable() && program.isFile())
            return program.absoluteFilePath();
    }
    return {};
}

TracerProcess::TracerProcess(TracerLimit limit)
    : m_limit(limit)
    , m_process(std::make_unique<QProcess>()) {}

TracerProcess::~TracerProcess() {
    if (m_process->state() == QProcess::NotRunning)
        return;
    m_process->kill();
    m_process->waitForFinished();
}

bool TracerProcess::start(const char* command, const QStringList& arguments) {
    const QString program = tracerProgram();
    if (program.isEmpty())
        return false;
    const int ms = qMax(1, int(m_limit.seconds * 1000.0));
    m_process->start(program, QStringList{QLatin1String(command), QString::number(ms)} + arguments);
    return m_process->waitForStarted();
}

bool TracerProcess::write(const QByteArray& head, const void* data, std::size_t size) {
    m_process->write(head);
    m_process->write(static_cast<const char*>(data), static_cast<qint64>(size));
    while (m_process->bytesToWrite() > 0) {
        if (!wait() || (!m_process->waitForBytesWritten(kLook) && m_process->state() == QProcess::NotRunning))
            return false;
    }
    m_process->closeWriteChannel();
    return true;
}

bool TracerProcess::read(void* data, std::size_t size) {
    auto* place = static_cast<char*>(data);
    auto left = static_cast<qint64>(size);
    while (left > 0) {
        const qint64 count = m_process->read(place, left);
        if (count < 0)
            return false;
        place += count;
        left -= count;
        if (left == 0 || count > 0)
            continue;
        if (!wait() || (!m_process->waitForReadyRead(kLook) && m_process->state() == QProcess::NotRunning &&
                        m_process->bytesAvailable() == 0))
            return false;
    }
    return true;
}

bool TracerProcess::wait() {
    m_late = m_late || m_limit.deadline.hasExpired();
    return !m_late && !m_limit.isCancelled();
}

QString TracerProcess::fault() {
    if (m_limit.isCancelled())
        return {};
    if (m_late)
        return LanguageManager::GetLanText(kTooLong);
    m_process->waitForFinished(kLook);
    if (m_process->state() != QProcess::NotRunning || m_process->error() == QProcess::FailedToStart)
        return LanguageManager::GetLanText("图片处理程序没有应答");
    const QString reason = LanguageManager::GetLanText(
        reasonOf(m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : -1));
    const QString detail = QString::fromUtf8(m_process->readAllStandardError()).simplified().left(200);
    return detail.isEmpty() ? reason : QStringLiteral("%1 (%2)").arg(reason, detail);
}

} // namespace sim

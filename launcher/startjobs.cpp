// SPDX-License-Identifier: MIT
#include "startjobs.h"

#include "automation/widgetdriver.h"
#include "console.h"
#include "consoleprogress.h"
#include "documentfiles.h"
#include "drawingimport.h"
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "figures.h"
#include "machinecontrol.h"
#include "markjob.h"
#include "runreport.h"
#include "shell/mainwindow.h"

#include <QFileInfo>

namespace tessera {

namespace {

constexpr int kProgressPeriod = 100; // ms

/// Opens a document or makes it the active one; false when it cannot be read.
bool open(QString const& path) {
    QString const name = DocumentFiles::openName(path);
    MainWindow::Instance()->OpenFile(name);
    return MainWindow::Instance()->IsFileOpened(name);
}

} // namespace

StartJobs::StartJobs(CommandLine const& commandLine, MachineControl* machine, QObject* parent)
    : QObject(parent)
    , m_commandLine(commandLine)
    , m_machine(machine) {
    m_progressTimer.setInterval(kProgressPeriod);
    connect(&m_progressTimer, &QTimer::timeout, this, &StartJobs::showProgress);
}

StartJobs::~StartJobs() = default;

void StartJobs::start() {
    if (!openDocuments() || !importDrawings()) {
        emit finished(false);
        return;
    }
    QString error;
    if (m_commandLine.panel && !m_machine->showPanel(error)) {
        emit finished(fail(error));
        return;
    }
    if (m_commandLine.mark > 0)
        startMarking();
    else
        emit finished(writeScreenshot());
}

bool StartJobs::openDocuments() {
    for (QString const& given : m_commandLine.open) {
        QString const path = DocumentFiles::existing(given);
        if (path.isEmpty())
            return fail(QStringLiteral("There is no document \"%1\".").arg(given));
        if (!open(path))
            return fail(QStringLiteral("\"%1\" is not a mark document or is damaged.").arg(path));
    }
    return true;
}

bool StartJobs::importDrawings() {
    for (QString const& drawing : m_commandLine.import) {
        QString report;
        QString error;
        QString const path = DrawingImport::import(drawing, report, error);
        if (path.isEmpty())
            return fail(error);
        Console::tell(QStringLiteral("%1\n%2\n").arg(drawing, report));
        if (!open(path))
            return fail(QStringLiteral("The imported document \"%1\" cannot be read again.").arg(path));
    }
    return true;
}

void StartJobs::startMarking() {
    m_marking = true;
    m_progress = std::make_unique<ConsoleProgress>(stderr, m_commandLine.mark);
    m_job = new MarkJob(m_commandLine.mark, this);
    connect(m_job, &MarkJob::ended, this, &StartJobs::markingEnded);
    connect(m_job, &MarkJob::passEnded, this,
            [this](int number, qint64 milliseconds) { m_progress->passEnded(number, milliseconds); });
    m_elapsed.start();
    m_progressTimer.start();
    m_job->start();
}

void StartJobs::showProgress() {
    double const estimate = m_machine->wallTime(documentFigures(*m_machine).estimatedTime);
    m_progress->show(m_job->passesDone(), estimate > 0 ? double(m_job->passTime()) / estimate : 0.0);
}

void StartJobs::markingEnded(QString const& error) {
    qint64 const elapsed = m_elapsed.elapsed();
    m_progressTimer.stop();
    m_progress->end();
    m_marking = false;
    bool ok = error.isEmpty() || fail(error);
    ok = writeTraces() && ok;
    ok = writeScreenshot() && ok;
    if (m_commandLine.report)
        printReport(elapsed);
    emit finished(ok);
}

bool StartJobs::writeTraces() {
    for (QString const& file : m_commandLine.traces) {
        QString error;
        if (!m_machine->writeTrace(file, error))
            return fail(error);
    }
    m_commandLine.traces.clear();
    return true;
}

bool StartJobs::writeScreenshot() {
    if (m_commandLine.screenshot.isEmpty())
        return true;
    QString error;
    return WidgetDriver::writePicture(WidgetDriver::pictureOfScreen(), m_commandLine.screenshot, error) || fail(error);
}

void StartJobs::printReport(qint64 elapsed) {
    RunFigures figures = documentFigures(*m_machine);
    figures.elapsedTime = elapsed;
    figures.passes = m_job->passesDone();
    figures.passesWanted = m_job->passesWanted();
    Console::print(runReport(figures));
}

bool StartJobs::fail(QString const& sentence) {
    Console::complain(sentence);
    return false;
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"

#include "tests/support/temporaryroot.h"
#include "tests/support/timeoutscale.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcessEnvironment>
#include <QSettings>
#include <QtTest>

namespace {

constexpr int kPollPeriod = 10; // ms

} // namespace

int longWait() {
    return tests::scaled(30000);
}

QString sampleFile(QString const& name) {
    return tests::sourcePath(QStringLiteral("samples/") + name);
}

int ProgramRoot::counter() const {
    return QSettings(inside(QStringLiteral("ini/Marking.ini")), QSettings::IniFormat).value("MarkCnt", 0).toInt();
}

TesseraProgram::TesseraProgram(ProgramRoot const& root)
    : m_root(root) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.remove(QStringLiteral("TESSERA_ROOT"));
    m_process.setProcessEnvironment(environment);
}

TesseraProgram::~TesseraProgram() {
    m_socket.abort();
    kill();
}

void TesseraProgram::setEnvironment(QString const& name, QString const& value) {
    QProcessEnvironment environment = m_process.processEnvironment();
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}

void TesseraProgram::start(QStringList const& arguments) {
    startPlain(QStringList{QStringLiteral("--root"), m_root.path()} + arguments);
}

void TesseraProgram::startPlain(QStringList const& arguments) {
    m_output.clear();
    m_errors.clear();
    m_process.start(QStringLiteral(TESSERA_PROGRAM), arguments);
    m_process.waitForStarted(longWait());
}

bool TesseraProgram::startAutomated(QStringList const& arguments) {
    start(arguments + QStringList{QStringLiteral("--automation"), m_root.socket()});
    return connectSocket();
}

bool TesseraProgram::connectSocket() {
    QDeadlineTimer deadline(longWait());
    while (!deadline.hasExpired() && isRunning()) {
        m_socket.connectToServer(m_root.socket());
        if (m_socket.waitForConnected(kPollPeriod))
            return true;
        m_process.waitForFinished(kPollPeriod);
    }
    return false;
}

bool TesseraProgram::waitEnd(int timeout) {
    return !isRunning() || m_process.waitForFinished(timeout);
}

int TesseraProgram::exitCode() const {
    bool const ended = m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit;
    return ended ? m_process.exitCode() : -1;
}

QByteArray TesseraProgram::output() {
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

QByteArray TesseraProgram::errors() {
    m_errors += m_process.readAllStandardError();
    return m_errors;
}

void TesseraProgram::kill() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(longWait());
}

void TesseraProgram::terminate() {
    m_process.terminate();
}

QByteArray TesseraProgram::readLine() {
    QDeadlineTimer deadline(longWait());
    while (!m_socket.canReadLine() && !deadline.hasExpired() && m_socket.state() == QLocalSocket::ConnectedState)
        m_socket.waitForReadyRead(int(deadline.remainingTime()));
    return m_socket.readLine();
}

QJsonValue TesseraProgram::call(QString const& method, QJsonObject const& params) {
    QJsonObject const request{{"jsonrpc", "2.0"}, {"id", ++m_id}, {"method", method}, {"params", params}};
    m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    QJsonObject const answer = QJsonDocument::fromJson(readLine()).object();
    m_error = answer.value("error").toObject();
    return answer.value("result");
}

QJsonValue TesseraProgram::waitFor(QString const& method, QJsonObject const& params,
                                   std::function<bool(QJsonValue const&)> const& fits) {
    QDeadlineTimer deadline(longWait());
    for (;;) {
        QJsonValue const result = call(method, params);
        if (fits(result) || deadline.hasExpired() || m_socket.state() != QLocalSocket::ConnectedState)
            return result;
        m_process.waitForFinished(kPollPeriod);
    }
}

QJsonValue TesseraProgram::get(QString const& object, QString const& property) {
    QJsonValue const value = call(QStringLiteral("ui.get"), {{"object", object}, {"property", property}});
    return value.isUndefined() ? QJsonValue(m_error) : value;
}

bool TesseraProgram::waitProperty(QString const& object, QString const& property, QJsonValue const& value) {
    QJsonValue const last = waitFor(QStringLiteral("ui.get"), {{"object", object}, {"property", property}},
                                    [&value](QJsonValue const& now) { return now == value; });
    if (last != value)
        qWarning() << object << property << "is" << last << "instead of" << value << m_error;
    return last == value;
}

QJsonArray TesseraProgram::journal(QStringList const& names) {
    QJsonArray picked;
    double last = 0.0;
    for (;;) {
        QJsonArray const page = call(QStringLiteral("card.journal"), {{"since", last}}).toArray();
        if (page.isEmpty())
            return picked;
        last = page.last().toObject().value("seq").toDouble();
        for (QJsonValue const& entry : page) {
            if (names.contains(entry.toObject().value("name").toString()))
                picked.append(entry);
        }
    }
}

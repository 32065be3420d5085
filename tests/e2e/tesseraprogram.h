// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QLocalSocket>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

/// Longest time that a test waits for what is to come, ms.
int longWait();

/// A file of samples/.
QString sampleFile(QString const& name);

/// A fresh application root and the files that a test puts beside it.
class ProgramRoot {
public:
    QString path() const { return m_directory.path() + QStringLiteral("/root"); }
    QString beside(QString const& name) const { return m_directory.filePath(name); }
    QString inside(QString const& name) const { return path() + QLatin1Char('/') + name; }
    QString socket() const { return beside(QStringLiteral("s")); }
    /// The station's run counter as stored, 0 when there is none.
    int counter() const;
    bool isValid() const { return m_directory.isValid(); }

private:
    QTemporaryDir m_directory;
};

/// One run of the real program, off screen. Kills it at the end of its life.
class TesseraProgram {
public:
    explicit TesseraProgram(ProgramRoot const& root);
    ~TesseraProgram();

    /// For the starts after it.
    void setEnvironment(QString const& name, QString const& value);
    /// Starts with --root and `arguments`.
    void start(QStringList const& arguments);
    /// Starts with the automation port too and connects to it; false when the program does not come up.
    bool startAutomated(QStringList const& arguments);
    /// Starts without --root.
    void startPlain(QStringList const& arguments);

    bool waitEnd(int timeout = longWait());
    /// The exit code, -1 while it runs or when it crashed.
    int exitCode() const;
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    QByteArray output();
    QByteArray errors();
    void kill();
    void terminate();
    qint64 processId() const { return m_process.processId(); }

    /// The result of a call; undefined for an error answer, which is left in lastError().
    QJsonValue call(QString const& method, QJsonObject const& params = {});
    QJsonObject lastError() const { return m_error; }
    /// Calls until `fits` holds for the result; the last result.
    QJsonValue waitFor(QString const& method, QJsonObject const& params,
                       std::function<bool(QJsonValue const&)> const& fits);
    /// Value of a property, or what came instead of it.
    QJsonValue get(QString const& object, QString const& property);
    bool waitProperty(QString const& object, QString const& property, QJsonValue const& value);
    /// Journal entries with one of these names, in their order.
    QJsonArray journal(QStringList const& names);
    QLocalSocket& socket() { return m_socket; }

private:
    bool connectSocket();
    QByteArray readLine();

    ProgramRoot const& m_root;
    QProcess m_process;
    QLocalSocket m_socket;
    QByteArray m_output;
    QByteArray m_errors;
    QJsonObject m_error;
    int m_id = 0;
};

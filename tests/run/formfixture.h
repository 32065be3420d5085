// SPDX-License-Identifier: MIT
#pragma once

#include "support/approot.h"
#include "tests/shell/windowfixture.h"

#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>

namespace tests {

/// What the lamps of the stack light are set to: red, green, yellow.
inline QVector<ExpectedCall> lamps(int red, int green, int yellow) {
    return {call("SetOutputBit", kRed, red), call("SetOutputBit", kGreen, green),
            call("SetOutputBit", kYellow, yellow)};
}

inline QString settingsFile() {
    return tessera::rootPath(QStringLiteral("/ini/Marking.ini"));
}

/// The count as it is on the disk.
inline int storedCount() {
    return QSettings(settingsFile(), QSettings::IniFormat).value(QStringLiteral("MarkCnt"), 0).toInt();
}

/// The lines of the debug window, which takes them on the main thread.
inline QStringList debugLines() {
    QCoreApplication::processEvents();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto const* text = window->findChild<QPlainTextEdit*>(QStringLiteral("plainTextEditDebug")))
            return text->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    qFatal("no debug window");
}

/// Slow enough that a job of one point is still under way when the test looks at it.
constexpr double kSlow = 0.0001;

/// The program with a document of one point and the run dialog up, anew for every test.
class RunDialogFixture {
protected:
    void begin() {
        QFile::remove(settingsFile());
        resetMachine();
        m_Window = std::make_unique<RunningWindow>();
        m_Window->newDocument();
        (*m_Window)->ShowNormalMarkWindow();
        machine().clearJournal();
    }
    void end() {
        if (m_Window && MainWindow::Instance())
            MainWindow::Instance()->CloseAllFile();
        m_Window.reset();
        QVERIFY(!Form_Marking::Instance());
    }

    Form_Marking& dialog() { return *Form_Marking::Instance(); }
    template<typename T>
    T* part(char const* name) {
        T* found = dialog().findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no %s in the run dialog", name);
        return found;
    }
    QString status() { return part<QLabel>("labelStatus")->text(); }
    QString look() { return part<QLabel>("labelStatus")->styleSheet(); }
    void press(char const* button) { part<QPushButton>(button)->click(); }
    int count() { return part<QLabel>("labelRunCnt")->text().toInt(); }
    /// Starts a job that goes on until it is stopped and waits until the dialog shows it.
    void startSlowly() {
        machine().setSpeed(kSlow);
        press("pushButtonStart");
        QTRY_COMPARE(look(), QStringLiteral("background:green"));
        QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    }
    bool idle() { return !dialog().IsRunning() && look() == QLatin1String("background:gray"); }

    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
};

} // namespace tests

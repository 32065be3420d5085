// SPDX-License-Identifier: MIT
#pragma once

#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "multidoc/multidocmark.h"
#include "tests/shell/windowfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>

namespace tests {

/// Slow enough that a job of one point is still under way when the test looks at it.
constexpr double kSlowRun = 0.0001;

/// What a run does at the card, but for the lamps.
inline QVector<JournalEntry> runJournal() {
    return only(machineJournal(), {"SetMarkStaus", "SetMarkType", "DownLayerPara", "StartMark", "StopMark"});
}

/// The program with no document and no project open, anew for every test. The inputs are not polled, so that a test
/// hands over each word itself.
class MultiDocFixture {
protected:
    void begin() {
        QVERIFY(m_Root.isValid());
        QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
        resetMachine();
        SystemParam::Instance()->SetEnableUserManager(false);
        SystemParam::Instance()->m_nResponseIO = 0;
        machine().setSpeed(0.0);
        start();
    }
    void end() {
        machine().setSpeed(0.0);
        if (m_Window)
            (*m_Window)->SetSafeAlarm(false, ~0U);
        m_Window.reset();
        QVERIFY(!MultiDocMark::Instance());
        QCoreApplication::processEvents();
    }
    /// Ends the program and starts it again.
    void start() {
        m_Window.reset();
        m_Window = std::make_unique<RunningWindow>();
        machine().clearJournal();
    }

    MainWindow& window() { return **m_Window; }
    static MultiDocMark& dialog() { return *MultiDocMark::Instance(); }
    static IMarkCardBase* card() { return MarkCardInstance::Instance(); }
    template<typename T>
    static T* part(char const* name) {
        T* found = dialog().findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no %s in the window", name);
        return found;
    }
    static void press(char const* button) { part<QPushButton>(button)->click(); }
    static void trigger(char const* action) { part<QAction>(action)->trigger(); }
    static QString label(char const* name) { return part<QLabel>(name)->text(); }
    static QListWidget* list() { return part<QListWidget>("listWidget"); }
    static QStringList rows() {
        QStringList names;
        for (int row = 0; row < list()->count(); ++row)
            names.append(list()->item(row)->text());
        return names;
    }

    QString projectFile(QString const& name) { return QStringLiteral("/MarkFile/MultiDocMarkFile/%1.mdf").arg(name); }
    QByteArray project(QString const& name) { return m_Root.read(projectFile(name)); }
    void writeProject(QString const& name, QByteArray const& text) { QVERIFY(m_Root.write(projectFile(name), text)); }
    static QString recentFile() { return QStringLiteral("/MarkFile/MultiDocMarkFile/recent"); }
    QByteArray recent() { return m_Root.read(recentFile()); }
    static void add(QString const& name, unsigned int value, unsigned int mask) {
        TrigerDoc doc{value, mask, name};
        dialog().AddDoc(doc);
    }
    /// Stores a document of this name that is not open.
    static void makeFile(QString const& name, int points = 1) {
        QRulerView view(nullptr);
        view.SetFileName(name);
        for (int i = 0; i < points; ++i)
            view.AddMarkPoint(QPointF(i, 0.0));
        QVERIFY(view.SaveDoc());
    }
    /// A word at the inputs that lasts.
    static void take(unsigned int word) {
        machine().setInputs(word);
        dialog().InputChange(word);
    }

    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
};

} // namespace tests

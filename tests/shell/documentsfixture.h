// SPDX-License-Identifier: MIT
#pragma once

#include "files/filelistview.h"
#include "files/filelistwidget.h"
#include "files/mfilebutton.h"
#include "tests/shell/windowfixture.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>

namespace tests {

/// The program with no document open, anew for every test, and what its lists tell.
class DocumentsFixture {
protected:
    void begin() {
        QVERIFY(m_Root.isValid());
        QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
        QFile::remove(m_Root.path(QStringLiteral("/ini/ShowDoc.ini")));
        SystemParam::Instance()->SetEnableUserManager(false);
        resetMachine();
        start();
    }
    void end() {
        m_Window.reset();
        SystemParam::Instance()->SetEnableUserManager(false);
    }
    /// Ends the program and starts it again.
    void start() {
        m_Window.reset();
        m_Window = std::make_unique<RunningWindow>();
    }

    MainWindow& window() { return **m_Window; }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }
    FileListView* fileList() { return m_Window->child<FileListView>("FileListView"); }
    FileListWidget* rows() { return m_Window->child<FileListWidget>("listWidget"); }

    QString file(char const* name) { return m_Root.path(QStringLiteral("/MarkFile/%1.mkf").arg(QLatin1String(name))); }
    QString recentFile() { return m_Root.path(QStringLiteral("/MarkFile/RecentFile.of")); }
    QByteArray recent() { return m_Root.read(QStringLiteral("/MarkFile/RecentFile.of")); }
    void writeRecent(QByteArray const& bytes) {
        QVERIFY(m_Root.write(QStringLiteral("/MarkFile/RecentFile.of"), bytes));
    }
    /// Stores a document of this name that is not open.
    void makeFile(QString const& name, int points = 0) {
        QRulerView view(nullptr);
        view.SetFileName(name);
        for (int i = 0; i < points; ++i)
            view.AddMarkPoint(QPointF(i, 0.0));
        QVERIFY(view.SaveDoc());
    }

    static QString baseName(QRulerView const* view) {
        return view ? QFileInfo(view->GetFileName()).completeBaseName() : QString();
    }
    /// The views in their order.
    QStringList openNames() {
        QStringList names;
        for (QRulerView* view : window().GetDocs())
            names.append(baseName(view));
        return names;
    }
    /// The rows in their order.
    QStringList rowNames() {
        QStringList names;
        for (int row = 0; row < rows()->count(); ++row) {
            auto* button = qobject_cast<MFileButton*>(rows()->itemWidget(rows()->item(row)));
            names.append(QFileInfo(button->GetFileName()).completeBaseName());
        }
        return names;
    }
    QString activeName() { return baseName(window().GetActiveView()); }

    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
};

} // namespace tests

// SPDX-License-Identifier: MIT
// A bare main window with a menu and a text edit.
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QTextEdit>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Quit"), &window, &QWidget::close);
    window.setCentralWidget(new QTextEdit(&window));
    window.resize(800, 600);
    window.show();
    return QApplication::exec();
}

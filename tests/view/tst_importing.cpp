// SPDX-License-Identifier: MIT
// The import of drawings and pictures as the operator orders it.
#include "support/dialoganswerer.h"
#include "viewfixture.h"

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

using namespace sim;
using tests::ViewFixture;

namespace {

/// What an operator types into the chooser of files.
std::function<void(QWidget&)> fileName(const QString& path) {
    return [path](QWidget& chooser) { chooser.findChild<QLineEdit*>()->setText(path); };
}

/// A black square on white, 10 mm.
QString savedPicture(const tests::TemporaryRoot& root) {
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 20; y < 80; ++y) {
        for (int x = 20; x < 80; ++x)
            image.setPixel(x, y, qRgb(0, 0, 0));
    }
    const QString path = root.path(QStringLiteral("picture.png"));
    if (!image.save(path))
        qFatal("the picture cannot be written");
    return path;
}

/// Does something from the event loop of the first dialog of a class, and closes the dialog if it is still there.
class DuringDialog : public QObject {
public:
    DuringDialog(const char* className, std::function<void()> act)
        : m_class(className)
        , m_act(std::move(act)) {
        connect(&m_timer, &QTimer::timeout, this, &DuringDialog::look);
        m_timer.start(5);
    }
    bool isDone() const { return m_done; }
    bool wasOpenAfterwards() const { return m_openAfterwards; }

private:
    void look() {
        const QPointer<QWidget> dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->inherits(m_class))
            return;
        m_timer.stop();
        m_act();
        m_done = true;
        m_openAfterwards = !dialog.isNull();
        if (dialog)
            static_cast<QDialog*>(dialog.data())->reject();
    }

    const char* m_class;
    std::function<void()> m_act;
    QTimer m_timer;
    bool m_done = false;
    bool m_openAfterwards = false;
};

} // namespace

class tst_Importing : public QObject {
    Q_OBJECT

private slots:
    void view_may_go_while_a_dialog_asks_data() {
        QTest::addColumn<QByteArray>("dialog");
        QTest::addColumn<bool>("inWindow");
        QTest::newRow("file, within a window") << QByteArray("QFileDialog") << true;
        QTest::newRow("file, a window itself") << QByteArray("QFileDialog") << false;
        QTest::newRow("picture, within a window") << QByteArray("sim::ImageDialog") << true;
        QTest::newRow("picture, a window itself") << QByteArray("sim::ImageDialog") << false;
    }
    void view_may_go_while_a_dialog_asks() {
        QFETCH(QByteArray, dialog);
        QFETCH(bool, inWindow);
        tests::TemporaryRoot root;
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* view = new QRulerView(nullptr);
        if (inWindow)
            layout->addWidget(view);
        (inWindow ? &window : view)->show();
        tests::DialogAnswerer answerer;
        answerer.leave(QString::fromLatin1(dialog));
        if (dialog != "QFileDialog")
            answerer.fillAndPress(fileName(savedPicture(root)), QStringLiteral("Open"));
        const DuringDialog during(dialog.constData(), [view] { delete view; });
        view->ImportVectorFile();
        QVERIFY(during.isDone());
        QVERIFY(answerer.allAnswered());
        // Over a window that stays the operator's dialog stays too.
        QCOMPARE(during.wasOpenAfterwards(), inWindow);
    }
};

QTEST_MAIN(tst_Importing)
#include "tst_importing.moc"

// SPDX-License-Identifier: MIT
// The import of drawings and pictures as the operator orders it.
#include "engine/layerdata.h"
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardcore.h"
#include "support/dialoganswerer.h"
#include "support/logtexts.h"
#include "viewfixture.h"

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <future>

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
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        simulatedCard().setSpeed(0.0);
    }
    void cleanup() {
        MarkCardInstance::Instance()->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
        simulatedCard().setSpeed(1.0);
        SystemParam::Instance()->SetSaveOperator(true);
    }

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

    void report_names_what_was_left_out_even_when_nothing_is_left() {
        ViewFixture f;
        SystemParam::Instance()->SetSaveOperator(false);
        QVERIFY(f.root.write("/notes.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='40mm' height='20mm'"
                                           " viewBox='0 0 40 20'><image href='a.png' width='5' height='5'/></svg>"));
        const QString path = f.root.path("/notes.svg");
        const auto tells = [](const QString& report) {
            return report.startsWith(QStringLiteral("文件中没有可导入的对象\n导入对象: 0")) &&
                   report.contains(QStringLiteral("未导入: 1 × image"));
        };
        QString report;
        QVERIFY(!f.view.ImportVectorFile(path, report));
        QVERIFY2(tells(report), qPrintable(report));
        tests::DialogAnswerer answerer;
        answerer.fillAndPress(fileName(path), QStringLiteral("Open")).press(QStringLiteral("确定"));
        f.view.ImportVectorFile();
        QVERIFY2(tells(answerer.texts().value(1)), qPrintable(answerer.texts().value(1)));
        // The log of the operator's doings is off; what a file has lost is written all the same.
        const QStringList logged = tests::logTexts("note").filter(path);
        QCOMPARE(logged.size(), 2);
        for (const QString& line : logged)
            QVERIFY2(line.contains(QStringLiteral("未导入: 1 × image")), qPrintable(line));
    }

    void report_of_what_was_added_is_logged_too() {
        ViewFixture f;
        SystemParam::Instance()->SetSaveOperator(false);
        QVERIFY(f.root.write("/mixed.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='40mm' height='20mm'"
                                           " viewBox='0 0 40 20'><image href='a.png' width='5' height='5'/>"
                                           "<rect width='5' height='5'/></svg>"));
        QString report;
        QVERIFY(f.view.ImportVectorFile(f.root.path("/mixed.svg"), report));
        QVERIFY2(report.startsWith(QStringLiteral("导入对象: 1\n")), qPrintable(report));
        QVERIFY2(report.contains(QStringLiteral("未导入: 1 × image")), qPrintable(report));
        QCOMPARE(tests::logTexts("note").filter(QStringLiteral("未导入: 1 × image")).size(), 1);
    }

    void nothing_is_imported_while_something_is_marked() {
        ViewFixture f;
        f.addRect(-10, -5, 20, 10);
        QVERIFY(f.root.write("/one.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='4mm' height='4mm'"
                                         " viewBox='0 0 4 4'><rect width='3' height='3'/></svg>"));
        const QString path = f.root.path("/one.svg");
        IMarkCardBase* card = MarkCardInstance::Instance();
        card->OpenCard();
        simulatedCard().setSpeed(0.001);
        card->SetMarkStaus(MarkStatusRun);
        MarkShapeContainer* tools = f.view.GetMarkTools();
        LayerParamEx* pens = f.view.GetLayerParams();
        auto run = std::async(std::launch::async, [=] { return tools->StartMark(false, false, pens); });
        QTRY_VERIFY(simulatedCard().head().activity == Activity::Running);
        QString report;
        QVERIFY(!f.view.ImportVectorFile(path, report));
        QVERIFY2(report.contains(QStringLiteral("打标时不能导入图形")), qPrintable(report));
        {
            tests::DialogAnswerer answerer;
            answerer.fillAndPress(fileName(path), QStringLiteral("Open")).press(QStringLiteral("确定"));
            f.view.ImportVectorFile();
            QCOMPARE(answerer.texts().value(1), report);
        }
        QCOMPARE(f.state()->count(), 1);
        QVERIFY(simulatedCard().head().activity == Activity::Running);
        simulatedCard().setSpeed(0.0);
        QVERIFY(run.get());
        card->SetMarkStaus(MarkStatusStop);
        QVERIFY2(f.view.ImportVectorFile(path, report), qPrintable(report));
    }
};

QTEST_MAIN(tst_Importing)
#include "tst_importing.moc"

// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"
#include "engine/imarktoolbase.h"
#include "engine/layerdata.h"
#include "engine/marktool.h"
#include "engine/vzlistviewex.h"
#include "tests/engine/enginedocument.h"
#include "tests/support/dialoganswerer.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

class TestDocuments : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

    static int count(QRulerView& view) { return view.GetMarkTools()->GetMarkTools().size(); }
    QString path(QString const& name) const { return m_root->path("MarkFile/" + name); }
    /// What an operator types into the chooser of files.
    static std::function<void(QWidget&)> fileName(QString const& path) {
        return [path](QWidget& chooser) { chooser.findChild<QLineEdit*>()->setText(path); };
    }
    void makeFolder() const { QVERIFY(QDir(m_root->path()).mkpath("MarkFile")); }

private slots:
    void a_list_of_no_document_moves_nothing();
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        LayerData::InitLayerData();
        QRulerView::Init();
        LoadExternToolModules();
        makeFolder();
    }
    void cleanupTestCase() {
        FreeExternModules();
        m_root.reset();
    }

    void new_document_is_empty_with_twenty_pens() {
        QRulerView view(nullptr);
        QCOMPARE(count(view), 0);
        QCOMPARE(view.GetLayerParams()->GetLayerData().size(), kLayerCount);
        QCOMPARE(view.GetSelectedToolCnt(), 0);
        QCOMPARE(view.GetFirstSelectedToolIndex(), -1);
        bool redo = true;
        bool undo = true;
        view.RedoUndoStatus(redo, undo);
        QVERIFY(!redo && !undo);
    }

    void pen_index_outside_changes_nothing_data() {
        QTest::addColumn<int>("index");
        for (int index : {-1, 20, 100000})
            QTest::addRow("%d", index) << index;
    }
    void pen_index_outside_changes_nothing() {
        QFETCH(int, index);
        LayerParamEx layers;
        LayerData data;
        data.MarkSpeed = 4711;
        layers.SetLayerData(index, data);
        for (LayerData const& pen : qAsConst(layers).GetLayerData())
            QVERIFY(pen.MarkSpeed != 4711);
        LayerData* address = &data;
        layers.GetLayerData(index, address);
        QVERIFY(!address);
        QVERIFY(!LayerParamEx::GetDefultColor(index).isValid());
    }

    void pen_is_copied_in_and_out_and_edited_by_address() {
        LayerParamEx layers;
        LayerData data;
        data.MarkSpeed = 4711;
        layers.SetLayerData(7, data);
        LayerData* address = nullptr;
        layers.GetLayerData(7, address);
        QVERIFY(address);
        QCOMPARE(address->MarkSpeed, 4711.0);
        address->Power = 12.5;
        LayerData copy;
        layers.GetLayerData(7, copy);
        QCOMPARE(copy.Power, 12.5);
        QVERIFY(LayerParamEx::GetDefultColor(19).isValid());
    }

    void bare_name_is_a_document_of_the_station() {
        QRulerView writer(nullptr);
        addSquares(writer, *m_root, 2);
        writer.SetFileName("plate");
        QVERIFY(writer.SaveDoc());
        QVERIFY(QFileInfo(path("plate.mkf")).isFile());
        QRulerView view(nullptr);
        view.SetFileName(path("plate.mkf"));
        QVERIFY(view.ReadDoc());
        QCOMPARE(count(view), 2);
    }

    void saved_document_is_read_again() {
        {
            QRulerView view(nullptr);
            addSquares(view, *m_root, 3);
            LayerData* pen = nullptr;
            view.GetLayerParams()->GetLayerData(3, pen);
            pen->MarkSpeed = 321.5;
            pen->WobbleEnable = true;
            view.SetFileName(path("saved.mkf"));
            QVERIFY(view.SaveDoc());
        }
        QRulerView view(nullptr);
        view.SetFileName(path("saved.mkf"));
        QVERIFY(view.ReadDoc());
        QCOMPARE(count(view), 3);
        LayerData pen;
        view.GetLayerParams()->GetLayerData(3, pen);
        QCOMPARE(pen.MarkSpeed, 321.5);
        QVERIFY(pen.WobbleEnable);
    }

    void missing_document_is_not_read() {
        QRulerView view(nullptr);
        view.SetFileName(path("nowhere.mkf"));
        QVERIFY(!view.ReadDoc());
    }

    void document_that_cannot_be_written_is_told() {
        QRulerView view(nullptr);
        view.SetFileName("/proc/none/x.mkf");
        QVERIFY(!view.SaveDoc());
    }

    void damaged_document_is_refused_and_the_present_one_stays_data() {
        QTest::addColumn<QString>("damage");
        for (char const* damage : {"empty", "half", "last byte", "first byte", "middle byte", "more", "text"})
            QTest::newRow(damage) << QString::fromLatin1(damage);
    }
    void damaged_document_is_refused_and_the_present_one_stays() {
        QFETCH(QString, damage);
        QRulerView writer(nullptr);
        addSquares(writer, *m_root, 3);
        writer.SetFileName(path("good.mkf"));
        QVERIFY(writer.SaveDoc());
        QByteArray bytes = m_root->read("/MarkFile/good.mkf");
        QVERIFY(!bytes.isEmpty());
        auto flip = [&bytes](int at) { bytes[at] = char(bytes.at(at) ^ 0x40); };
        if (damage == "empty")
            bytes.clear();
        else if (damage == "half")
            bytes.truncate(bytes.size() / 2);
        else if (damage == "last byte")
            bytes.chop(1);
        else if (damage == "first byte")
            flip(0);
        else if (damage == "middle byte")
            flip(bytes.size() / 2);
        else if (damage == "more")
            bytes.append("tail");
        else
            bytes = "this is no mark document\n";
        QVERIFY(m_root->write("/MarkFile/bad.mkf", bytes));

        QRulerView view(nullptr);
        addSquares(view, *m_root, 2);
        view.SetFileName(path("bad.mkf"));
        QVERIFY(!view.ReadDoc());
        QCOMPARE(count(view), 2);
        QCOMPARE(m_root->read("/MarkFile/bad.mkf"), bytes);
    }

    void every_single_byte_of_damage_is_noticed() {
        QRulerView writer(nullptr);
        addSquares(writer, *m_root, 1);
        writer.SetFileName(path("small.mkf"));
        QVERIFY(writer.SaveDoc());
        QByteArray const good = m_root->read("/MarkFile/small.mkf");
        QRulerView view(nullptr);
        view.SetFileName(path("flipped.mkf"));
        int const step = qMax(1, good.size() / 200);
        for (int at = 0; at < good.size(); at += step) {
            QByteArray bad = good;
            bad[at] = char(bad.at(at) ^ 0x01);
            QVERIFY(m_root->write("/MarkFile/flipped.mkf", bad));
            QVERIFY2(!view.ReadDoc(), qPrintable(QStringLiteral("byte %1 of %2").arg(at).arg(good.size())));
        }
    }

    void pushed_document_takes_content_and_name_and_writes_nothing_data() {
        QTest::addColumn<QString>("first");
        QTest::newRow("of the machine") << "pushed";
        QTest::newRow("in the line") << "data:";
    }
    void pushed_document_takes_content_and_name_and_writes_nothing() {
        QFETCH(QString, first);
        QRulerView writer(nullptr);
        addSquares(writer, *m_root, 2);
        writer.SetFileName("pushed");
        QVERIFY(writer.SaveDoc());
        if (first == "data:")
            first += QString::fromLatin1(m_root->read("/MarkFile/pushed.mkf").toBase64());
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        QVERIFY(view.ReadDoc(first, "received"));
        QCOMPARE(count(view), 2);
        QCOMPARE(view.GetFileName(), QString("received"));
        QVERIFY(!m_root->exists("/MarkFile/received.mkf"));
    }

    void bad_push_leaves_the_present_document_data() {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::newRow("missing") << "no such document"
                                 << "received";
        QTest::newRow("not put") << "upload:nothing"
                                 << "received";
        QTest::newRow("no document") << "data:AAAA"
                                     << "received";
        QTest::newRow("no base64") << "data:*"
                                   << "received";
        QTest::newRow("name leads out") << "pushed"
                                        << "../received";
        QTest::newRow("content from outside") << "../pushed"
                                              << "received";
        QTest::newRow("no name") << "pushed"
                                 << "";
    }
    void bad_push_leaves_the_present_document() {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QRulerView writer(nullptr);
        addSquares(writer, *m_root, 2);
        writer.SetFileName("pushed");
        QVERIFY(writer.SaveDoc());
        QVERIFY(m_root->write("/pushed.mkf", m_root->read("/MarkFile/pushed.mkf")));
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        view.SetFileName("present");
        QVERIFY(!view.ReadDoc(first, second));
        QCOMPARE(count(view), 1);
        QCOMPARE(view.GetFileName(), QString("present"));
        QVERIFY(!m_root->exists("/MarkFile/received.mkf") && !m_root->exists("/received.mkf"));
    }

    void saving_over_a_document_leaves_one_file() {
        QRulerView view(nullptr);
        view.SetFileName(path("again.mkf"));
        QVERIFY(view.SaveDoc());
        addSquares(view, *m_root, 2);
        QVERIFY(view.SaveDoc());
        int files = 0;
        for (QString const& name : QDir(path("")).entryList(QDir::Files | QDir::Hidden))
            files += name.contains("again");
        QCOMPARE(files, 1);
    }

    void import_is_one_step_back_and_forth() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 3);
        bool redo = true;
        bool undo = false;
        view.RedoUndoStatus(redo, undo);
        QVERIFY(undo && !redo);
        view.Undo();
        QCOMPARE(count(view), 0);
        view.RedoUndoStatus(redo, undo);
        QVERIFY(redo && !undo);
        view.Redo();
        QCOMPARE(count(view), 3);
    }

    void drawing_that_cannot_be_read_is_told_and_changes_nothing() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        QVERIFY(m_root->write("/bad.svg", "<svg"));
        for (QString const& file :
             {m_root->path("nothing.svg"), m_root->path("bad.svg"), m_root->path("squares.xyz")}) {
            QString error;
            QVERIFY(!view.ImportVectorFile(file, error));
            QVERIFY2(!error.isEmpty(), qPrintable(file));
            QCOMPARE(count(view), 1);
        }
    }

    void vector_file_is_asked_for_and_its_report_shown() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        {
            tests::DialogAnswerer answerer;
            answerer.fillAndPress(fileName(m_root->path("squares.svg")), QStringLiteral("Open"))
                .press(QStringLiteral("确定"));
            view.ImportVectorFile();
            QVERIFY(answerer.allAnswered());
            const QString title = QStringLiteral("导入矢量文件");
            QCOMPARE(answerer.titles(), (QStringList{title, title}));
        }
        QCOMPARE(count(view), 2);
        view.Undo();
        QCOMPARE(count(view), 1);
    }

    void vector_file_that_is_not_chosen_or_not_readable_adds_nothing() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        QVERIFY(m_root->write("/bad.svg", "<svg"));
        {
            tests::DialogAnswerer answerer;
            answerer.reject();
            view.ImportVectorFile();
            QVERIFY(answerer.allAnswered());
        }
        QCOMPARE(count(view), 1);
        {
            tests::DialogAnswerer answerer;
            answerer.fillAndPress(fileName(m_root->path("bad.svg")), QStringLiteral("Open"))
                .press(QStringLiteral("确定"));
            view.ImportVectorFile();
            QVERIFY(answerer.allAnswered());
        }
        QCOMPARE(count(view), 1);
        tests::DialogAnswerer answerer; // none is shown
        view.SetReadOnly(true);
        view.ImportVectorFile();
        QCOMPARE(count(view), 1);
    }

    void read_only_document_is_not_edited() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 2);
        view.SetReadOnly(true);
        view.AddMarkPoint(QPointF(1, 1));
        view.Undo();
        view.Sort();
        QVERIFY(!view.AddText(QPointF(0, 0), QStringLiteral("A"), 5.0));
        QCOMPARE(count(view), 2);
        view.SetReadOnly(false);
        view.AddMarkPoint(QPointF(1, 1));
        QCOMPARE(count(view), 3);
    }

    void text_is_added_on_the_current_pen() {
        QRulerView view(nullptr);
        view.SetCurrentLayerWithOutChangeLayer(6);
        QVERIFY(view.AddText(QPointF(10, 20), QStringLiteral("P 30%\n500 mm/s"), 4.0));
        QCOMPARE(count(view), 1);
        QCOMPARE(view.GetToolLayer(0), 6);
        QCOMPARE(view.GetSelectedToolCnt(), 1);
        // a capital letter stands on the given place and is as high as asked for
        QVERIFY(view.AddText(QPointF(-30, -5), QStringLiteral("H"), 4.0));
        view.SetBasePoint(BasePointBottomLeft);
        double x = 0, y = 0, width = 0, height = 0, angle = 0;
        QVERIFY(view.GetSelectObjPos(x, y, width, height, angle));
        QVERIFY(qAbs(y + 5.0) < 0.001 && qAbs(height - 4.0) < 0.001 && angle == 0.0);
        QVERIFY(x >= -30.0 && x < -28.0);
        view.Undo();
        QCOMPARE(count(view), 1);
    }

    void unusable_texts_are_refused_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("height");
        QTest::newRow("empty") << QString() << 5.0;
        QTest::newRow("blank") << QStringLiteral("  ") << 5.0;
        QTest::newRow("control character") << QStringLiteral("a\tb") << 5.0;
        QTest::newRow("too long") << QString(10001, QLatin1Char('a')) << 5.0;
        QTest::newRow("no height") << QStringLiteral("a") << 0.0;
        QTest::newRow("height not a number") << QStringLiteral("a") << qQNaN();
    }
    void unusable_texts_are_refused() {
        QFETCH(QString, text);
        QFETCH(double, height);
        QRulerView view(nullptr);
        QVERIFY(!view.AddText(QPointF(0, 0), text, height));
        QCOMPARE(count(view), 0);
    }

    void queries_outside_the_list_are_answered() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        MarkShapeContainer& tools = *view.GetMarkTools();
        QVERIFY(tools[0]);
        QVERIFY(!tools[1]);
        QVERIFY(!tools[-1]);
        QCOMPARE(view.GetToolLayer(5), -1);
        QCOMPARE(view.GetToolLayer(-1), -1);
        QVERIFY(view.GetToolLayer(0) >= 0);
        bool edge = false;
        bool fillFirst = true;
        bool simple = true;
        QVERIFY(tools[0]->GetTool());
        tools[0]->GetFillParam(edge, fillFirst, simple);
    }

    void operator_and_pen_are_kept() {
        QRulerView view(nullptr);
        view.SetOperatorOnView(OperatorAddLine);
        QCOMPARE(view.GetOperatorOnView(), OperatorAddLine);
        view.SetCurrentLayer(6);
        QCOMPARE(view.GetCurrentLayer(), 6);
        view.SetCurrentLayerWithOutChangeLayer(2);
        QCOMPARE(view.GetCurrentLayer(), 2);
        view.SetKeyMoveDist(0.25);
        QCOMPARE(view.GetKeyMoveDist(), 0.25);
    }

    void object_list_is_a_widget_with_a_list_view() {
        QRulerView view(nullptr);
        QVERIFY(view.GetShowObjList());
        QVERIFY(view.GetObjListView());
        QVERIFY(view.GetObjListView()->model());
        addSquares(view, *m_root, 2);
        QCOMPARE(view.GetObjListView()->model()->rowCount(), 2);
    }

    void closed_document_tells_its_path() {
        auto* view = new QRulerView(nullptr);
        view->SetFileName(path("closing.mkf"));
        QSignalSpy closed(view, &QRulerView::SubWndClosed);
        delete view;
        QCOMPARE(closed.count(), 1);
        QCOMPARE(closed.first().first().toString(), path("closing.mkf"));
    }

    void tool_modules_make_the_tools_they_offer() {
        for (IMarkToolModule* module : GetExternModules()) {
            for (MarkToolBaseInfo* info : module->GetToolInfos()) {
                std::unique_ptr<IMarkToolBase> const tool(module->CreateTool(info->GetToolClassName()));
                QVERIFY2(tool != nullptr, qPrintable(info->GetToolClassName()));
                QVERIFY(!info->GetToolName().isEmpty());
            }
            QVERIFY(!module->CreateTool("NoSuchTool"));
        }
    }
};

void TestDocuments::a_list_of_no_document_moves_nothing() {
    VZListViewEx list(nullptr);
    list.MoveObjUp();
    list.MoveObjDown();
    list.MoveObj2First();
    list.MoveObj2Last();
    QVERIFY(!list.model() || list.model()->rowCount() == 0);
}

QTEST_MAIN(TestDocuments)
#include "tst_documents.moc"

// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"

#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace {

char const* const kRows = "FileListView/listWidget";
char const* const kBox = "QMessageBox";

/// Every object of a tree that `fits`, with what is below it.
void collect(QJsonValue const& tree, std::function<bool(QJsonObject const&)> const& fits, QVector<QJsonObject>& found) {
    for (QJsonValue const& value : tree.toArray()) {
        QJsonObject const object = value.toObject();
        if (fits(object))
            found.append(object);
        collect(object.value("children"), fits, found);
    }
}

} // namespace

/// The set of open documents over a restart, driven through the port alone.
class TestDocuments : public QObject {
    Q_OBJECT

    std::unique_ptr<ProgramRoot> m_root;
    std::unique_ptr<TesseraProgram> m_program;

    bool start(QStringList const& arguments = {}) {
        m_program = std::make_unique<TesseraProgram>(*m_root);
        return m_program->startAutomated(QStringList{"--sim-speed", "0"} + arguments) &&
               m_program->waitProperty("actionSort", "enabled", true);
    }
    bool end() {
        m_program->call("app.quit");
        return m_program->waitEnd() && m_program->exitCode() == 0;
    }
    bool trigger(char const* action) { return m_program->call("ui.trigger", {{"action", action}}) == QJsonValue(true); }
    bool click(QString const& object) { return m_program->call("ui.click", {{"object", object}}) == QJsonValue(true); }
    /// Objects of the window that fit; asks again until there are some.
    QVector<QJsonObject> objects(QString const& below, std::function<bool(QJsonObject const&)> const& fits) {
        QVector<QJsonObject> found;
        m_program->waitFor("ui.tree", {{"object", below}}, [&](QJsonValue const& tree) {
            found.clear();
            collect(tree, fits, found);
            return !found.isEmpty();
        });
        return found;
    }
    /// Presses the button of a message box whose text, without "&", is this, and waits for the box to go.
    bool answer(QString const& text, QString const& button) {
        QVector<QJsonObject> const labels = objects(
            kBox, [&](QJsonObject const& o) { return o.value("class") == "QLabel" && o.value("text") == text; });
        QVector<QJsonObject> const buttons = objects(kBox, [&](QJsonObject const& o) {
            return o.value("class") == "QPushButton" && o.value("text").toString().remove('&') == button;
        });
        if (labels.isEmpty() || buttons.isEmpty() || !click(buttons.first().value("path").toString()))
            return false;
        return m_program
            ->waitFor("ui.tree", {{"object", kBox}}, [](QJsonValue const& tree) { return tree.isUndefined(); })
            .isUndefined();
    }
    /// The rows of the open documents from top to bottom.
    QStringList rows() {
        QStringList names;
        for (int row = 0;; ++row) {
            QJsonObject const item = m_program->call("ui.item", {{"object", kRows}, {"row", row}}).toObject();
            if (row >= item.value("rows").toInt())
                return names;
            names.append(item.value("text").toString());
        }
    }
    bool waitRows(QStringList const& names) {
        QStringList now;
        m_program->waitFor("ui.windows", {}, [&](QJsonValue const&) {
            now = rows();
            return now == names;
        });
        if (now != names)
            qWarning() << "rows are" << now;
        return now == names;
    }
    bool newDocument(QString const& name) {
        if (!trigger("action_NewFile") || !m_program->waitProperty("FileManager", "visible", true))
            return false;
        m_program->call("ui.set",
                        {{"object", "FileManager/lineEditAddFileName"}, {"property", "text"}, {"value", name}});
        return click("FileManager/pushButtonOK");
    }
    /// Puts a point into the middle of the document that is to be seen.
    bool drawPoint() {
        QVector<QJsonObject> const canvas = objects(
            "tabFile", [](QJsonObject const& o) { return o.value("name") == "canvas" && o.value("visible").toBool(); });
        // The tool stays chosen; to trigger it again would be to lay it down.
        if (m_program->get("actionAddPoint", "checked") != QJsonValue(true))
            trigger("actionAddPoint");
        return canvas.size() == 1 && m_program->waitProperty("actionAddPoint", "checked", true) &&
               click(canvas.first().value("path").toString()) && m_program->waitProperty("actionUnDo", "enabled", true);
    }
    /// How many objects the document has that is to be seen.
    int objectCount() {
        QVector<QJsonObject> const lists = objects("LeftPanel", [](QJsonObject const& o) {
            return o.value("class") == "VZListViewEx" && o.value("visible").toBool();
        });
        if (lists.size() != 1)
            return -1;
        QString const path = lists.first().value("path").toString();
        QJsonValue const item = m_program->call("ui.item", {{"object", path}, {"row", 0}});
        return item.toObject().value("rows").toInt();
    }
    bool save() { return trigger("actionSaveFile") && answer(QStringLiteral("保存成功"), QStringLiteral("确定")); }
    bool select(int row) {
        return !m_program->call("ui.item", {{"object", kRows}, {"row", row}, {"select", true}}).isUndefined();
    }
    QByteArray fileBytes(char const* name) {
        QFile file(m_root->inside(QStringLiteral("MarkFile/") + QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void init() { m_root = std::make_unique<ProgramRoot>(); }
    void cleanup() {
        m_program.reset();
        m_root.reset();
    }

    void the_set_comes_back_after_a_restart() {
        QVERIFY(start());
        // Typed with capitals, a name is taken in small letters.
        QVERIFY(newDocument("Plate1") && waitRows({"plate1"}));
        QVERIFY(drawPoint() && save());
        QVERIFY(newDocument("gear") && waitRows({"plate1", "gear"}));
        QVERIFY(drawPoint() && drawPoint() && save());
        QVERIFY(newDocument("housing") && waitRows({"plate1", "gear", "housing"}));
        QVERIFY(drawPoint());

        // One is closed by its row, without storing what was drawn last.
        QVector<QJsonObject> const labels = objects("FileListView", [](QJsonObject const& o) {
            return o.value("name") == "label" && o.value("text") == " housing";
        });
        QCOMPARE(labels.size(), 1);
        QString const row = labels.first().value("path").toString().section('/', 0, -2);
        QVERIFY(click(row + "/pushButton"));
        QVERIFY(answer(QStringLiteral("是否保存当前文档"), QStringLiteral("否(N)")));
        QVERIFY(waitRows({"plate1", "gear"}));
        QCOMPARE(objectCount(), 2);

        // A third one again, and the rows in another order than that of opening.
        QVERIFY(newDocument("cover") && waitRows({"plate1", "gear", "cover"}));
        m_program->call("ui.key", {{"key", "Up"}, {"object", kRows}});
        m_program->call("ui.key", {{"key", "Up"}, {"object", kRows}});
        QVERIFY(waitRows({"cover", "plate1", "gear"}));
        QVERIFY(end());
        QVERIFY(fileBytes("RecentFile.of").startsWith("3\nplate1\ngear\ncover\n"));

        QVERIFY(start());
        QVERIFY(waitRows({"plate1", "gear", "cover"}));
        QCOMPARE(objectCount(), 0);
        QVERIFY(select(0));
        QTRY_COMPARE(objectCount(), 1);
        QVERIFY(select(1));
        QTRY_COMPARE(objectCount(), 2);
        // The closed one is still stored, as empty as it was made.
        QVERIFY(QFileInfo::exists(m_root->inside("MarkFile/housing.mkf")));
        QVERIFY(end());
    }

    void paths_with_capitals_drop_out_at_the_restart() {
        QVERIFY(start({"--import", sampleFile("name-plate.svg")}));
        // A drawing's document has a name in small letters, so that it comes back.
        QVERIFY(waitRows({"name-plate"}));
        QVERIFY(end());
        QVERIFY(start());
        QVERIFY(waitRows({"name-plate"}));
        QVERIFY(end());

        QDir const folder(m_root->inside("MarkFile"));
        QVERIFY(QFile::rename(folder.filePath("name-plate.mkf"), folder.filePath("Name-Plate.mkf")));
        QString const path = folder.absoluteFilePath("Name-Plate.mkf");
        QVERIFY(start({"--open", "Name-Plate"}));
        QVERIFY(waitRows({path}));
        QVERIFY(newDocument("plate") && waitRows({path, "plate"}));
        QVERIFY(end());
        QCOMPARE(fileBytes("RecentFile.of"), "2\n" + path.toUtf8() + "\nplate\n");

        QVERIFY(start());
        QVERIFY(waitRows({"plate"}));
        QVERIFY(end());
        QVERIFY(fileBytes("RecentFile.of").startsWith("1\nplate\n"));
        QVERIFY(QFileInfo::exists(path));
    }

    void a_killed_program_comes_back_with_its_set() {
        QVERIFY(start());
        QVERIFY(newDocument("one") && waitRows({"one"}));
        QVERIFY(newDocument("two") && waitRows({"one", "two"}));
        m_program->kill();
        QVERIFY(start());
        QVERIFY(waitRows({"one", "two"}));
        QVERIFY(end());
    }
};

QTEST_GUILESS_MAIN(TestDocuments)
#include "tst_documents.moc"

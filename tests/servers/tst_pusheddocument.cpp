// SPDX-License-Identifier: MIT
// Documents that a station pushes: what is taken over, and that nothing is left of what is refused.
#include "engine/qrulerview.h"
#include "simengine/servers/documentuploads.h"
#include "simengine/servers/pusheddocument.h"
#include "support/logtexts.h"
#include "support/temporaryroot.h"

#include <QDir>
#include <QDirIterator>
#include <QtTest>

namespace {

QString inlineText(QByteArray const& bytes) {
    return "data:" + QString::fromLatin1(bytes.toBase64());
}

int objectsOf(QRulerView const& view) {
    int objects = 0;
    int vertices = 0;
    view.GetDocStatistics(objects, vertices);
    return objects;
}

} // namespace

class PushedDocumentTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;
    QByteArray m_file; ///< of a document with two rectangles

    /// Every file and folder below the root but the log, with what the files hold.
    QMap<QString, QByteArray> everything() const {
        QMap<QString, QByteArray> all;
        QDirIterator it(m_root->path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QString const path = it.next();
            if (path.contains(QString::fromUtf8("日志文件")))
                continue;
            QFile file(path);
            all[path] = it.fileInfo().isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }
        return all;
    }

    /// A push that is to be refused with `reason`, and after which all is as it was.
    void refuse(QString const& first, QString const& second, QString const& reason) {
        QRulerView view(nullptr);
        view.SetFileName("before");
        view.AddMarkPoint(QPointF(1, 2));
        auto const before = everything();
        QVERIFY(!view.ReadDoc(first, second));
        QCOMPARE(view.GetFileName(), QString("before"));
        QCOMPARE(objectsOf(view), 1);
        QCOMPARE(everything(), before);
        QVERIFY2(tests::logBytes().contains(reason.toUtf8()), tests::logBytes());
    }

private slots:
    void initTestCase() { QRulerView::Init(); }
    void init() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QRulerView view(nullptr);
        view.SetFileName("source");
        QVERIFY(view.AddDrawing({{QRectF(0, 0, 3, 4), 0, {}}, {QRectF(5, 5, 1, 1), 2, {}}}, {}));
        QVERIFY(view.SaveDoc());
        m_file = m_root->read("/MarkFile/source.mkf");
        QVERIFY(!m_file.isEmpty());
    }
    void cleanup() {
        sim::stationUploads().clear();
        m_root.reset();
    }

    void content_in_the_line_is_taken_over_and_nothing_written() {
        QRulerView view(nullptr);
        auto const before = everything();
        QVERIFY(view.ReadDoc(inlineText(m_file), "plate"));
        QCOMPARE(everything(), before);
        QCOMPARE(objectsOf(view), 2);
        QCOMPARE(view.GetToolLayer(1), 2);
        QCOMPARE(view.GetFileName(), QString("plate"));
        QVERIFY(view.SaveDoc());
        QCOMPARE(m_root->read("/MarkFile/plate.mkf"), m_file);
    }

    void content_that_was_put_is_taken_over_and_stays() {
        QString error;
        QVERIFY(sim::stationUploads().put(QString::fromUtf8("板 1"), 0, m_file.left(100), error));
        refuse(QString::fromUtf8("upload:板 1"), "plate", "pushed document plate");
        QVERIFY(sim::stationUploads().put(QString::fromUtf8("板 1"), 100, m_file.mid(100), error));
        for (char const* name : {"plate", "other"}) {
            QRulerView view(nullptr);
            QVERIFY(view.ReadDoc(QString::fromUtf8("upload:板 1"), name));
            QCOMPARE(objectsOf(view), 2);
            QCOMPARE(view.GetFileName(), QString(name));
        }
    }

    void a_document_of_the_machine_is_taken_over_data() {
        QTest::addColumn<QString>("first");
        QTest::newRow("bare") << "source";
        QTest::newRow("with ending") << "source.mkf";
        QTest::newRow("path") << "ROOT/MarkFile/source.mkf";
        QTest::newRow("in a folder") << "ROOT/MarkFile/parts/a.mkf";
        QTest::newRow("through a link inside") << "ROOT/MarkFile/link.mkf";
    }
    void a_document_of_the_machine_is_taken_over() {
        QFETCH(QString, first);
        QVERIFY(m_root->write("/MarkFile/parts/a.mkf", m_file));
        QVERIFY(QFile::link(m_root->path("/MarkFile/source.mkf"), m_root->path("/MarkFile/link.mkf")));
        QRulerView view(nullptr);
        QVERIFY(view.ReadDoc(first.replace("ROOT", m_root->path()), "plate"));
        QCOMPARE(objectsOf(view), 2);
    }

    void the_name_may_be_a_path_in_the_documents_folder() {
        QRulerView view(nullptr);
        QString const path = m_root->path() + "/MarkFile/parts/plate.mkf";
        QVERIFY(view.ReadDoc(inlineText(m_file), path));
        QCOMPARE(view.GetFileName(), path);
        QVERIFY(view.SaveDoc());
        QCOMPARE(m_root->read("/MarkFile/parts/plate.mkf"), m_file);
    }

    void names_that_lead_elsewhere_are_refused_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "";
        QTest::newRow("up") << "../plate";
        QTest::newRow("dots") << "..";
        QTest::newRow("hidden") << ".plate";
        QTest::newRow("absolute") << "ROOT/plate.mkf";
        QTest::newRow("system") << "/etc/passwd";
        QTest::newRow("relative path") << "MarkFile/plate.mkf";
        QTest::newRow("up inside a path") << "ROOT/MarkFile/../plate.mkf";
        QTest::newRow("up and back") << "ROOT/MarkFile/../MarkFile/plate.mkf";
        QTest::newRow("dot inside a path") << "ROOT/MarkFile/./plate.mkf";
        QTest::newRow("double slash") << "ROOT/MarkFile//plate.mkf";
        QTest::newRow("folder") << "ROOT/MarkFile/";
        QTest::newRow("neighbour folder") << "ROOT/MarkFileX/plate.mkf";
        QTest::newRow("other ending") << "ROOT/MarkFile/plate.ini";
        QTest::newRow("backslash") << "a\\b";
        QTest::newRow("colon") << "C:plate";
        QTest::newRow("line feed") << "a\nb";
        QTest::newRow("zero") << QString("a") + QChar(0) + "b";
        QTest::newRow("too long") << QString(252, 'n');
        QTest::newRow("half a character") << QString(QChar(0xd800));
        QTest::newRow("linked folder") << "ROOT/MarkFile/out/plate.mkf";
        QTest::newRow("link to a file outside") << "outfile";
        QTest::newRow("link to nothing outside") << "dangling";
    }
    void names_that_lead_elsewhere_are_refused() {
        QFETCH(QString, name);
        name.replace("ROOT", m_root->path());
        QVERIFY(m_root->write("/elsewhere/plate.mkf", m_file));
        QVERIFY(QFile::link(m_root->path("/elsewhere"), m_root->path("/MarkFile/out")));
        QVERIFY(QFile::link(m_root->path("/elsewhere/plate.mkf"), m_root->path("/MarkFile/outfile.mkf")));
        QVERIFY(QFile::link(m_root->path("/elsewhere/new.mkf"), m_root->path("/MarkFile/dangling.mkf")));
        QVERIFY(m_root->write("/plate.mkf", m_file));
        refuse(inlineText(m_file), name, "no name of a document in");
        refuse(name, "plate", "no name of a document in");
    }

    void the_longest_name_of_a_file_is_taken() {
        QRulerView view(nullptr);
        QVERIFY(view.ReadDoc(inlineText(m_file), QString(251, 'n')));
        QVERIFY(view.SaveDoc());
        QVERIFY(m_root->exists("/MarkFile/" + QString(251, 'n') + ".mkf"));
    }

    void a_linked_documents_folder_serves() {
        QVERIFY(QDir().rename(m_root->path("/MarkFile"), m_root->path("/store")));
        QVERIFY(QFile::link(m_root->path("/store"), m_root->path("/MarkFile")));
        QRulerView view(nullptr);
        QVERIFY(view.ReadDoc("source", "plate"));
        QVERIFY(view.SaveDoc());
        QVERIFY(m_root->exists("/store/plate.mkf"));
    }

    void without_a_documents_folder_a_push_makes_it() {
        QVERIFY(QDir(m_root->path("/MarkFile")).removeRecursively());
        refuse("source", "plate", "source.mkf");
        QRulerView view(nullptr);
        QVERIFY(view.ReadDoc(inlineText(m_file), "plate"));
        QVERIFY(view.SaveDoc());
        QCOMPARE(m_root->read("/MarkFile/plate.mkf"), m_file);
    }

    void missing_content_is_refused_data() {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("reason");
        QTest::newRow("nothing") << "data:"
                                 << "pushed document plate: ";
        QTest::newRow("no base64") << "data:***"
                                   << "the content is not base64";
        QTest::newRow("base64 cut short") << "data:AAAAA"
                                          << "the content is not base64";
        QTest::newRow("line feed in base64") << "data:AAAA\nAAA"
                                             << "the content is not base64";
        QTest::newRow("no letter of Latin 1") << QString::fromUtf8("data:板板板板") << "the content is not base64";
        QTest::newRow("not put") << "upload:other"
                                 << "nothing was put as \"other\"";
        QTest::newRow("no document") << "other"
                                     << "other.mkf";
        QTest::newRow("other bytes") << inlineText("no document at all") << "pushed document plate: ";
    }
    void missing_content_is_refused() {
        QFETCH(QString, first);
        QFETCH(QString, reason);
        refuse(first, "plate", reason);
    }

    void content_with_a_byte_changed_or_cut_off_is_refused() {
        constexpr int kStep = 17; // bytes; the format's own tests try each of them
        QRulerView view(nullptr);
        view.SetFileName("before");
        auto const before = everything();
        for (int at = 0; at < m_file.size(); at += kStep) {
            QByteArray bad = m_file;
            bad[at] = static_cast<char>(bad[at] ^ 0x10);
            QVERIFY2(!view.ReadDoc(inlineText(bad), "plate"), qPrintable(QString::number(at)));
            QVERIFY2(!view.ReadDoc(inlineText(m_file.left(at)), "plate"), qPrintable(QString::number(at)));
        }
        QVERIFY(!view.ReadDoc(inlineText(m_file + '\0'), "plate"));
        QCOMPARE(view.GetFileName(), QString("before"));
        QCOMPARE(objectsOf(view), 0);
        QCOMPARE(everything(), before);
    }

    void a_fresh_push_takes_no_steps_back() {
        QRulerView view(nullptr);
        view.AddMarkPoint(QPointF(1, 2));
        QVERIFY(view.ReadDoc(inlineText(m_file), "plate"));
        bool redo = true;
        bool undo = true;
        view.RedoUndoStatus(redo, undo);
        QVERIFY(!redo && !undo);
    }
};

QTEST_MAIN(PushedDocumentTest)
#include "tst_pusheddocument.moc"

// SPDX-License-Identifier: MIT
// Drawings that need more memory than there is.
#include "engine/languagemanager.h"
#include "engine/layerdata.h"
#include "engine/markshapecontainer.h"
#include "engine/vzmarkcard.h"
#include "samples.h"
#include "simengine/card/cardcore.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/importers/imageimport.h"
#include "simengine/log/runtimes.h"
#include "simengine/servers/pusheddocument.h"
#include "simengine/view/imagetracer.h"
#include "simengine/view/marktoolaccess.h"
#include "simengine/view/playbackloader.h"
#include "support/scarcememory.h"
#include "support/temporaryroot.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <thread>

using namespace sim;
using tests::ScarceMemory;

namespace {

/// Larger than what a call of the toolkit takes, smaller than the blocks of the drawings here.
constexpr std::size_t kLarge = 100'000;

/// An object of 20,000 lines.
ObjectPtr longLine() {
    QPolygonF points;
    for (int i = 0; i <= 20'000; ++i)
        points.append({i * 1e-3, (i % 2) * 1e-3});
    return samples::line(points);
}

DocumentContent manyObjects() {
    ObjectList objects;
    for (int i = 0; i < 20'000; ++i)
        objects.push_back(samples::point(i * 1e-3, 1.0));
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(std::move(objects));
    return content;
}

QString noMemory() {
    return LanguageManager::GetLanText("内存不足");
}

} // namespace

class MemoryTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;

    QString picture() const {
        QImage image(1000, 1000, QImage::Format_RGB32);
        image.fill(Qt::white);
        for (int i = 200; i < 800; ++i) {
            for (int k = 200; k < 800; ++k)
                image.setPixel(i, k, qRgb(0, 0, 0));
        }
        const QString path = m_root->path(QStringLiteral("/picture.png"));
        return image.save(path) ? path : QString();
    }

private slots:
    void init() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QVERIFY(m_root->isValid());
        QVERIFY(!noMemory().isEmpty()); // the texts are there before memory is short, as in the program
    }
    void cleanup() {
        RunTimes::instance().flush();
        m_root.reset();
    }

    void a_document_that_cannot_be_read_stays_as_it_was_data() {
        QTest::addColumn<int>("least");
        for (int least : {1, 300, 4096, int(kLarge)})
            QTest::addRow("%d", least) << least;
    }
    void a_document_that_cannot_be_read_stays_as_it_was() {
        QFETCH(int, least);
        Document large;
        large.setContent(manyObjects());
        large.setFileName(m_root->path(QStringLiteral("/large.mkf")));
        QVERIFY(saveDocument(large, nullptr));
        Document document;
        document.setContent(samples::fullContent());
        const QByteArray before = samples::bytesOf(document);
        document.setFileName(large.fileName());
        QString error;
        {
            const ScarceMemory memory(static_cast<std::size_t>(least));
            QVERIFY(!loadDocument(document, &error));
            QVERIFY(memory.refused() > 0);
        }
        QVERIFY2(error.contains(noMemory()) && error.contains("large.mkf"), qPrintable(error));
        QCOMPARE(samples::bytesOf(document), before);
        QVERIFY2(loadDocument(document, &error), qPrintable(error));
    }

    void a_document_that_cannot_be_written_stays_modified() {
        Document document;
        document.setContent(samples::fullContent());
        document.setFileName(m_root->path(QStringLiteral("/a.mkf")));
        QVERIFY(saveDocument(document, nullptr));
        const QByteArray before = m_root->read(QStringLiteral("/a.mkf"));
        document.edit([](const DocumentState& s) { return edits::add(s, {samples::point(0, 0)}); });
        QString error;
        {
            const ScarceMemory memory(1);
            QVERIFY(!saveDocument(document, &error));
        }
        QCOMPARE(error, noMemory());
        QVERIFY(document.isModified());
        QCOMPARE(m_root->read(QStringLiteral("/a.mkf")), before);
        QVERIFY(saveDocument(document, nullptr));
    }

    void a_pushed_document_is_refused() {
        const QByteArray bytes = *encodeMkf(manyObjects());
        const QString pushed = QStringLiteral("data:") + QString::fromLatin1(bytes.toBase64());
        QString error;
        {
            const ScarceMemory memory(kLarge);
            QVERIFY(!pushedContent(pushed, error));
        }
        QCOMPARE(error, noMemory());
        error.clear();
        QVERIFY2(pushedContent(pushed, error), qPrintable(error));
    }

    void a_picture_is_refused() {
        const QString path = picture();
        ImportResult result;
        {
            const ScarceMemory memory(kLarge);
            result = importImage(path);
            QVERIFY(memory.refused() > 0);
        }
        QVERIFY(!result.ok());
        QVERIFY2(result.error.contains(noMemory()) && result.error.contains(path), qPrintable(result.error));
        QVERIFY(importImage(path).ok());
    }

    void a_picture_in_the_dialog_is_told() {
        const QString path = picture();
        ImageTracer tracer(nullptr);
        QSignalSpy read(&tracer, &ImageTracer::imageRead);
        {
            const ScarceMemory memory(kLarge);
            tracer.read(path);
            QTRY_COMPARE(read.count(), 1);
        }
        QCOMPARE(read.at(0).at(0).toString(), noMemory());
        QVERIFY(!tracer.image());
        tracer.read(path);
        QTRY_COMPARE(read.count(), 2);
        QVERIFY(tracer.image());
        TracePreview preview;
        connect(&tracer, &ImageTracer::traced, this, [&preview](const TracePreview& traced) { preview = traced; });
        {
            const ScarceMemory memory(4096);
            tracer.trace({}, QSize(400, 400));
            QTRY_VERIFY(!tracer.isBusy());
            QVERIFY(memory.refused() > 0);
        }
        QCOMPARE(preview.traced.error, noMemory());
        tracer.trace({}, QSize(400, 400));
        QTRY_VERIFY(!tracer.isBusy());
        QVERIFY(preview.traced.ok());
    }

    void a_job_is_refused_and_told() {
        LayerData::InitLayerData();
        Document document;
        const auto container = MarkShapeContainerAccess::make(document);
        VZMarkCard made;
        CardCore& card = simulatedCard();
        card.setSpeed(0.0);
        QVERIFY(card.open());
        card.setKind(MarkKind::Laser);
        DocumentContent content;
        content.objects = std::make_shared<const ObjectList>(ObjectList{longLine()});
        document.setContent(content);
        const std::uint64_t jobs = card.runner().jobs();
        const auto run = [&] {
            card.setState(RunState::Run);
            bool marked = false;
            // as the program does it
            std::thread([&] { marked = container->StartMark(false, false, document.pens()); }).join();
            return marked;
        };
        {
            const ScarceMemory memory(kLarge);
            QVERIFY(!run());
            QVERIFY(memory.refused() > 0);
        }
        QCOMPARE(card.runner().jobs(), jobs);
        QVERIFY(run());
        QCOMPARE(card.runner().jobs(), jobs + 1);
    }

    void a_playback_is_refused_and_told() {
        DocumentContent content;
        content.objects = std::make_shared<const ObjectList>(ObjectList{longLine()});
        Document document;
        document.setContent(content);
        PlaybackLoader loader(nullptr);
        QSignalSpy failed(&loader, &PlaybackLoader::failed);
        QSignalSpy loaded(&loader, &PlaybackLoader::loaded);
        const RunPlan plan = currentPlan(document.state(), currentOptions(false, {}), {});
        {
            const ScarceMemory memory(kLarge);
            loader.load(plan);
            QTRY_COMPARE(failed.count(), 1);
        }
        QCOMPARE(failed.at(0).at(0).toString(), noMemory());
        QVERIFY(!loader.isBusy());
        loader.load(plan);
        QTRY_COMPARE(loaded.count(), 1);
    }
};

QTEST_MAIN(MemoryTest)
#include "tst_memory.moc"

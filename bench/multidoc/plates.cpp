// SPDX-License-Identifier: MIT
#include "bench/multidoc/plates.h"

#include "engine/qrulerview.h"
#include "multidoc/multidocmark.h"
#include "simengine/simcontrol.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <cmath>
#include <random>

namespace bench {

namespace {

constexpr double kStepMm = 0.5;
const QLatin1String kName("plate ");

} // namespace

QString nameOf(int document) {
    return kName + QString::number(document);
}

int documentOf(QString const& name) {
    return name.midRef(kName.size()).toInt();
}

int documentAt(double x) {
    return static_cast<int>(std::lround(x / kStepMm));
}

void storeDocuments() {
    for (int i = 0; i < int(kDocuments); ++i) {
        QRulerView view(nullptr);
        view.SetFileName(nameOf(i));
        view.AddMarkPoint(QPointF(i * kStepMm, 0.0));
        view.SaveDoc();
    }
}

void setProject(std::vector<TrigerDoc> entries) {
    MultiDocMark::Instance()->ClearDocs();
    for (TrigerDoc& entry : entries)
        MultiDocMark::Instance()->AddDoc(entry);
}

std::vector<TrigerDoc> mixedEntries() {
    std::mt19937 random(50);
    std::vector<TrigerDoc> entries;
    for (int i = 0; i < int(kDocuments); ++i) {
        unsigned int mask = 0;
        const unsigned int inputs = 5 + random() % 3;
        while (unsigned(__builtin_popcount(mask)) < inputs)
            mask |= 1U << random() % 10;
        entries.push_back({unsigned(random()) & mask, mask, nameOf(i)});
    }
    return entries;
}

bool startRun() {
    tessera_sim_control()->setInputs(0);
    MultiDocMark* window = MultiDocMark::Instance();
    window->StartMark();
    QElapsedTimer time;
    time.start();
    while (window->GetMarkStatus() != MultiMarkWaiting && time.elapsed() < kPatience.count())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return window->GetMarkStatus() == MultiMarkWaiting;
}

void stopRun() {
    MultiDocMark::Instance()->findChild<QPushButton*>(QStringLiteral("pushButtonStop"))->click();
    QCoreApplication::processEvents();
}

} // namespace bench

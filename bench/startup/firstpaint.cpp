// SPDX-License-Identifier: MIT
// Loaded by LD_PRELOAD into the programs that bench_startup compares. When the main window has been painted for the
// first time and the event loop has come round again, writes "<ns of the monotonic clock> <resident kB>" into the file
// TESSERA_FIRSTPAINT and ends the program.
#include "tests/support/processstatus.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QMainWindow>
#include <QTimer>
#include <ctime>

namespace {

long long nowNs() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

class FirstPaint : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!m_seen && event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched)) {
            m_seen = true;
            QTimer::singleShot(0, this, [] { tell(); });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static void tell() {
        QFile file(qEnvironmentVariable("TESSERA_FIRSTPAINT"));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray::number(nowNs()) + ' ' + QByteArray::number(int(tests::processStatus("VmRSS:"))));
        file.close();
        QCoreApplication::quit();
    }
    bool m_seen = false;
};

void installFirstPaint() {
    auto* filter = new FirstPaint;
    filter->setParent(QCoreApplication::instance());
    QCoreApplication::instance()->installEventFilter(filter);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installFirstPaint)

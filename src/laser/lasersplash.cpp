// SPDX-License-Identifier: MIT
#include "laser/lasersplash.h"

#include "engine/languagemanager.h"
#include "ui_lasersplash.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace tessera {

namespace {

/// Waits are multiples of 50 ms, so two decimals tell them whole; the elapsed time is shown in tenths.
QString seconds(qint64 ms, int decimals) {
    return QString::number(static_cast<double>(ms) / 1000.0, 'f', decimals);
}

} // namespace

QString LaserWaitText(QString const& what, int line) {
    if (line < 0)
        return what;
    return what + QStringLiteral(" (") + LanguageManager::GetLanText("输入口") + QStringLiteral(" %1)").arg(line);
}

QString LaserSinceText(QTime const& since, qint64 elapsedMs, int longestMs) {
    return LanguageManager::GetLanText("自%1起,已等待%2秒,最长%3秒")
        .arg(since.toString(QStringLiteral("HH:mm:ss")), seconds(elapsedMs, 1), seconds(longestMs, 2));
}

} // namespace tessera

LaserSplash::LaserSplash(QString const& title)
    : QFrame(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , ui(std::make_unique<Ui_LaserSplash>()) {
    ui->setupUi(this);
    ui->labelTitle->setText(title);
}

LaserSplash::~LaserSplash() = default;

void LaserSplash::ShowWait(QString const& what, int line, int longestMs) {
    m_Since = QTime::currentTime();
    m_Elapsed.start();
    m_LongestMs = longestMs;
    ui->labelWait->setText(tessera::LaserWaitText(what, line));
    ShowElapsed();
    ToMiddle();
    show();
    raise();
    Refresh();
}

/// The main thread is waiting, so nobody else lets the window system have its say. Presses and network traffic stay
/// where they are until the start is over.
void LaserSplash::Refresh() {
    ShowElapsed();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
}

void LaserSplash::ShowElapsed() {
    ui->labelSince->setText(tessera::LaserSinceText(m_Since, m_Elapsed.elapsed(), m_LongestMs));
}

void LaserSplash::ToMiddle() {
    adjustSize();
    QScreen const* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect place(QPoint(), size());
    place.moveCenter(screen->availableGeometry().center());
    setGeometry(place);
}

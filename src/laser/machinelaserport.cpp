// SPDX-License-Identifier: MIT
#include "laser/machinelaserport.h"

#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/msgbox.h"
#include "laser/lasersplash.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace tessera {

namespace {

/// How often the elapsed time on the splash is written anew.
constexpr std::chrono::milliseconds kRefresh(100);

} // namespace

MachineLaserPort::MachineLaserPort() = default;

MachineLaserPort::~MachineLaserPort() = default;

bool MachineLaserPort::IsOpen() {
    IMarkCardBase const* card = MarkCardInstance::Instance();
    return card && card->IsCardOpend();
}

void MachineLaserPort::SetOutput(int line, int value) {
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        card->SetOutputBit(line, value);
}

int MachineLaserPort::Input(int line) {
    IMarkCardBase const* card = MarkCardInstance::Instance();
    return card ? card->GetInputBit(line) : 0;
}

/// What is drawn meanwhile takes its time out of the wait and does not add to it.
void MachineLaserPort::Wait(int ms) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(ms);
    for (Clock::time_point now = Clock::now(); now < end; now = Clock::now()) {
        if (m_Splash)
            m_Splash->Refresh();
        std::this_thread::sleep_until(std::min(end, now + kRefresh));
    }
}

void MachineLaserPort::Notice(char const* text) {
    if (m_Splash)
        m_Splash->hide();
    msgBox::show(LanguageManager::GetLanText("提示"), LanguageManager::GetLanText(text), 1);
}

void MachineLaserPort::SequenceBegins(char const* title) {
    m_Splash = std::make_unique<LaserSplash>(LanguageManager::GetLanText(title));
}

void MachineLaserPort::WaitBegins(LaserWait const& wait) {
    if (m_Splash)
        m_Splash->ShowWait(LanguageManager::GetLanText(wait.what), wait.line, wait.longestMs);
}

void MachineLaserPort::SequenceEnds() {
    m_Splash.reset();
}

} // namespace tessera

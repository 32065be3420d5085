// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/cardfunctions.h"

#include "engine/markingmparam_vz.h"
#include "engine/marklog.h"
#include "simengine/card/cardlink.h"
#include "simengine/card/fitteddevices.h"
#include "simengine/card/headsettings.h"
#include "simengine/lasers/fittedlaser.h"

#include "support/approot.h"

#include <QFileInfo>

#include <mutex>

using namespace sim;

namespace {

/// Simulated time of a restart of the card, ms.
constexpr double kRestartMs = 2000.0;
/// Simulated time in which the flash takes a byte: 256 of them in 0.7 ms.
constexpr double kFlashMsPerByte = 0.7 / 256.0;

struct MessageSink {
    std::mutex mutex;
    VZMessageFunction function = nullptr;
};

MessageSink& messageSink() {
    static MessageSink sink;
    return sink;
}

void record(char const* name, std::vector<JournalValue> args = {}) {
    simulatedCard().journal().add(name, std::move(args));
}

/// Bits 5 and 6 hold the two lower bits of the laser type, bit 7 the third.
unsigned int laserTypeBits() {
    unsigned int const type = static_cast<unsigned int>(MarkingMParam_VZ::Instance()->GetMarkCardType());
    return (type & 3u) << 5 | (type >> 2 & 1u) << 7;
}

} // namespace

void sim::showCardMessage(QString const& text, int kind) {
    VZMessageFunction function = nullptr;
    {
        MessageSink& sink = messageSink();
        const std::lock_guard<std::mutex> lock(sink.mutex);
        function = sink.function;
    }
    if (function)
        function(text.toUtf8().constData(), kind);
    else if (kind == 0)
        MarkLog::Instance()->ShowNote(text);
    else
        MarkLog::Instance()->ShowNote_Error(text);
}

void VZ_GetHdVer(unsigned int* word) {
    record("VZ_GetHdVer");
    if (!word)
        return;
    constexpr unsigned int kLaserMask = 7u << 5;
    CardCore& card = simulatedCard();
    *word = card.isOpen() ? (card.devices().hardwareBits() & ~kLaserMask) | laserTypeBits() : 0;
}

void VZ_SetFuncMessageDisp(VZMessageFunction function, void*) {
    record("VZ_SetFuncMessageDisp", journalArgs(function != nullptr));
    MessageSink& sink = messageSink();
    const std::lock_guard<std::mutex> lock(sink.mutex);
    sink.function = function;
}

void VZ_OutputError(int on) {
    record("VZ_OutputError", journalArgs(on));
    simulatedCard().setErrorOutput(on != 0);
}

void VZ_OutputWaveNo(int number) {
    record("VZ_OutputWaveNo", journalArgs(number));
    if (simulatedCard().isOpen())
        simulatedCard().devices().setWaveNumber(number);
}

void VZ_TestOssSwitchSpeed() {
    record("VZ_TestOssSwitchSpeed");
    if (simulatedCard().isOpen())
        MarkLog::Instance()->ShowNode(NoteDebug, QStringLiteral("VZ_TestOssSwitchSpeed: ") + switchTimes());
}

void VZ_SetFlyPara() {
    record("VZ_SetFlyPara");
    if (simulatedCard().isOpen())
        fitEncoder();
}

void VZ_SetFlyEncInitPos(int position) {
    record("VZ_SetFlyEncInitPos", journalArgs(position));
    if (simulatedCard().isOpen())
        simulatedCard().encoder().setCount(position);
}

void VZ_GetEncPos(int* position) {
    if (position)
        *position = simulatedCard().isOpen() ? simulatedCard().encoder().count() : 0;
}

int VZ_FlashWriteAddr(unsigned int address, unsigned char const* data, int size) {
    record("VZ_FlashWriteAddr", journalArgs(address, size));
    CardCore& card = simulatedCard();
    if (!card.isOpen() || card.isRebooting() || card.faults().isOn("flash_fails"))
        return -1;
    if (!card.devices().flash().write(address, data, size))
        return -1;
    return card.waitSimulated(size * kFlashMsPerByte) ? 0 : -1;
}

void VZ_ResetCardFlash() {
    record("VZ_ResetCardFlash");
    simulatedCard().reboot(kRestartMs);
}

void VZ_SetCardParaFile(char const* path) {
    QString const file = QString::fromLatin1(path);
    record("VZ_SetCardParaFile", journalArgs(file.toStdString()));
    if (!simulatedCard().isOpen())
        return;
    bool const readable = QFileInfo(file).isReadable();
    if (!readable)
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("VZ_SetCardParaFile: ") + file);
    fitLaser();
    // The names of some folders do not come through Latin-1; the file's usual place is the same one.
    loadGridCorrection(readable ? file : tessera::rootPath(QStringLiteral("/ini/VZMarkPara.cfg")));
}

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

/// C functions of the card library. Any thread. With the card closed they change nothing; the functions that fill a
/// value write 0, and a write to the flash fails.
extern "C" {

/// Signature of the function that shows a message of the card library: text in UTF-8, kind 0 information, 1 error.
typedef void (*VZMessageFunction)(char const* text, int kind);

/// Hardware word: the laser type is bit 7 times 4 plus bits 5 and 6 as a number; bits 22 and 23 tell the card variant,
/// and of variant 1 bit 12 which of its two kinds it is.
ENGINE_API void VZ_GetHdVer(unsigned int* word);
/// Gives the card library its message function, null for none. `context` may be null and is not handed on: the message
/// function has no place for it.
ENGINE_API void VZ_SetFuncMessageDisp(VZMessageFunction function, void* context);
/// Drives the card's error output, 0 or 1.
ENGINE_API void VZ_OutputError(int on);
/// Puts a waveform number, 0 to 15, on the waveform outputs for a test.
ENGINE_API void VZ_OutputWaveNo(int number);
/// Runs the switching-time test of the beam splitter.
ENGINE_API void VZ_TestOssSwitchSpeed();
/// The card takes over the fly-marking values that SystemParam holds.
ENGINE_API void VZ_SetFlyPara();
/// Sets the count of the fly-marking encoder.
ENGINE_API void VZ_SetFlyEncInitPos(int position);
/// Reads the encoder count.
ENGINE_API void VZ_GetEncPos(int* position);
/// Writes 1 to 2048 bytes of firmware at an address; 0 on success. Blocks until they are written.
ENGINE_API int VZ_FlashWriteAddr(unsigned int address, unsigned char const* data, int size);
/// Restarts the card after a firmware update; it erases nothing. Ends a running job and blocks until the card is back.
ENGINE_API void VZ_ResetCardFlash();
/// The card rereads its parameter file, and with it the high-precision correction table when the file switches it on;
/// `path` is in Latin-1.
ENGINE_API void VZ_SetCardParaFile(char const* path);
}

/// Message function of the engine: shows a message to the operator, or logs it when no window is up. `kind` as above.
/// Any thread; it does not wait for the operator.
ENGINE_API void MessageBox(char const* text, int kind);

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/imodbuslaser.h"

IModbusLaser* IModbusLaser::m_hInstance = nullptr;

IModbusLaser::~IModbusLaser() {
    if (m_hInstance == this)
        m_hInstance = nullptr;
}

IModbusLaser* IModbusLaser::Instance() {
    return m_hInstance;
}

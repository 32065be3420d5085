// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>
#include <atomic>

/// The current user's rights. With user management off every right is given. The rights may be asked from any thread;
/// the dialogs belong to the main thread.
class ENGINE_API AuthorityManager {
public:
    static bool CanNewFile();
    static bool CanOpenFile();
    static bool CanSaveFile();
    static bool CanDeleteFile();
    static bool CanAddMarkShape();
    static bool CanEditMarkTool();
    static bool CanEditMarkParam();

    /// Name of the user who is logged in; empty when nobody is, or with user management off. Main thread.
    static QString GetCurrentUser();
    /// Asks for a login; true when the user has changed.
    static bool Logining();
    static void Loginout();
    static void ChangePassWord();
    static void addUser();
    static void UsersManagerConfig();
    /// The administrator's password as set for the machine; empty when none was set.
    static QString GetAdminPassWord();
    /// Switches the automatic logout after `seconds` without operation and persists it.
    static void SetAutoLoginOut(bool enable, int seconds);
    /// Begins to watch for operation with the stored settings.
    static void StartAutoLoginOut();
};

extern ENGINE_API std::atomic<bool> g_bAutoLoginOut; ///< automatic logout is on
extern ENGINE_API std::atomic<int> g_LoginOutSecond; ///< s without operation

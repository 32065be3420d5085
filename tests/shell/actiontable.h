// SPDX-License-Identifier: MIT
#pragma once

namespace tests {

/// What decides whether an action can be used, once a user has been taken over.
enum class Gate {
    Always,
    NewFile,      ///< the right to make documents
    OpenFile,     ///< the right to open documents
    SaveFile,     ///< a document, and the right to save
    AddBar,       ///< nothing of its own: its tool bar follows a document and the right to add objects
    Add,          ///< a document, and the right to add objects
    EditSelected, ///< a document with a selection, and the right to edit objects
    EditUndo,     ///< a document with something to undo, and the right to edit objects
    EditRedo,     ///< the same for redo
    Off,          ///< a change of user switches it off; a change of selection may switch it on
    Selection,    ///< left as it is: follows what kind of objects is selected
};

/// An action of the main window. `slot` is the slot that the rule of names connects, as moc spells it; empty for an
/// action that is wired by hand.
struct ActionRow {
    char const* name;
    char const* key;
    char const* english;
    char const* slot;
    bool checkable;
    Gate gate;
};

inline constexpr ActionRow kActionRows[] = {
    {"actionNew", "新建", "New", "on_actionNew_triggered()", false, Gate::Always},
    {"actionOpen", "打开", "Open", "on_actionOpen_triggered()", false, Gate::Always},
    {"actionSave", "保存", "Save", "on_actionSave_triggered()", false, Gate::Always},
    {"actionSaveAs", "另存为", "Save as", "on_actionSaveAs_triggered()", false, Gate::Always},
    {"actionFileManager", "文件管理", "File manager", "on_actionFileManager_triggered()", false, Gate::Always},
    {"actionSoftUpdate", "软件更新", "Software update", "on_actionSoftUpdate_triggered()", false, Gate::Always},
    {"actionSoftBackup", "软件备份", "Software backup", "on_actionSoftBackup_triggered()", false, Gate::Always},
    {"actionHardUpdate", "固件更新", "Firmware update", "on_actionHardUpdate_triggered()", false, Gate::Always},
    {"actionSetResolution", "设置分辨率", "Set resolution", "on_actionSetResolution_triggered()", false, Gate::Always},
    {"actionUpdateTime_2", "更新时间", "Update time", "on_actionUpdateTime_2_triggered()", false, Gate::Always},
    {"actionSetTime", "设置时间", "Set time", "on_actionSetTime_triggered()", false, Gate::Always},
    {"actionImportTTFFont", "ImportTTFFont", "Import fonts", "on_actionImportTTFFont_triggered()", false, Gate::Always},
    {"actionReboot", "重启设备", "Restart device", "on_actionReboot_triggered()", false, Gate::Always},
    {"actionShutdown", "关机", "Shut down", "on_actionShutdown_triggered()", false, Gate::Always},
    {"actionOpenTerminal", "打开终端", "Open terminal", "on_actionOpenTerminal_triggered()", false, Gate::Always},
    {"actionSetBackImage", "设置背景图", "Set background image", "on_actionSetBackImage_triggered()", false,
     Gate::Always},
    {"actionSetSplashImage", "SplashSetting", "Splash screen", "on_actionSetSplashImage_triggered()", false,
     Gate::Always},
    {"actionShowDebugInfo", "显示调试信息", "Show debug information", "on_actionShowDebugInfo_triggered()", false,
     Gate::Always},
    {"actionSystemSet", "系统设置", "System settings", "on_actionSystemSet_triggered()", false, Gate::Always},
    {"actionMotionSet", "运控设置", "Motion settings", "", false, Gate::Always},
    {"actionBoxCalib", "Box校正", "Box calibration", "on_actionBoxCalib_triggered()", false, Gate::Always},
    {"actionIOSet", "IO设置", "I/O settings", "on_actionIOSet_triggered()", false, Gate::Always},
    {"actionCCD", "CCD拍照位设置", "CCD photo positions", "on_actionCCD_triggered()", false, Gate::Always},
    {"actionLaserTypeSet", "激光器主机设置", "Laser source settings", "on_actionLaserTypeSet_triggered()", false,
     Gate::Always},
    {"actionSplitLaserSet", "高速分光设置", "High-speed beam splitting", "on_actionSplitLaserSet_triggered()", false,
     Gate::Always},
    {"actionFlyMarkingSetting", "FlyMarkSetting", "Marking on the fly", "on_actionFlyMarkingSetting_triggered()", false,
     Gate::Always},
    {"actionResetVZCard", "振镜卡初始复位", "Factory reset of scanner card", "on_actionResetVZCard_triggered()", false,
     Gate::Always},
    {"actionSetLan", "语言选择", "Language", "on_actionSetLan_triggered()", false, Gate::Always},
    {"action_ResolutionSet", "分辨率设置", "Resolution settings", "on_action_ResolutionSet_triggered()", false,
     Gate::Always},
    {"actionChangeUser", "切换用户", "Change user", "on_actionChangeUser_triggered()", false, Gate::Always},
    {"actionChangePassWord", "修改密码", "Change password", "on_actionChangePassWord_triggered()", false, Gate::Always},
    {"actionNewUser", "新建用户", "New user", "on_actionNewUser_triggered()", false, Gate::Always},
    {"actionViewPermission", "查看权限", "View rights", "on_actionViewPermission_triggered()", false, Gate::Always},
    {"action_LaserHostLayin", "镭锳激光器设置", "Leiying laser settings", "on_action_LaserHostLayin_triggered()", false,
     Gate::Always},
    {"action_LaserHostMAX", "创鑫激光器", "Chuangxin laser", "on_action_LaserHostMAX_triggered()", false, Gate::Always},
    {"actionChangeDebug", "切换调试模式", "Switch debug mode", "on_actionChangeDebug_triggered()", false, Gate::Always},
    {"actionShowDoc", "显示说明书", "Show manual", "on_actionShowDoc_triggered(bool)", true, Gate::Always},
    {"action_NewFile", "新建", "New", "", false, Gate::NewFile},
    {"actionOpenFlie", "打开", "Open", "", false, Gate::OpenFile},
    {"actionSaveFile", "保存", "Save", "", false, Gate::SaveFile},
    {"actionSaveAll", "保存所有", "Save all", "", false, Gate::SaveFile},
    {"actionUnDo", "撤销", "Undo", "", false, Gate::EditUndo},
    {"actionReDo", "恢复", "Redo", "", false, Gate::EditRedo},
    {"actionSort", "排序", "Sort", "", false, Gate::Always},
    {"actionscaleSelect", "放大选中对象", "Zoom to selection", "on_actionscaleSelect_triggered()", false, Gate::Always},
    {"actionscaleRegion", "框选放大", "Zoom to frame", "on_actionscaleRegion_triggered(bool)", true, Gate::Always},
    {"actionzoomIn", "放大", "Zoom in", "on_actionzoomIn_triggered()", false, Gate::Always},
    {"actionzoomOut", "缩小", "Zoom out", "on_actionzoomOut_triggered()", false, Gate::Always},
    {"actionscaleReset", "显示全部", "Show all", "on_actionscaleReset_triggered()", false, Gate::Always},
    {"actionMark", "运行", "Run", "on_actionMark_triggered()", false, Gate::Always},
    {"actionMultiDocMark", "多文档运行", "Multi-document run", "on_actionMultiDocMark_triggered()", false,
     Gate::Always},
    {"Select", "选择对象", "Select", "", true, Gate::AddBar},
    {"actionAddPoint", "绘制点", "Draw point", "", true, Gate::AddBar},
    {"actionaddLine", "绘制线", "Draw line", "", true, Gate::AddBar},
    {"actionAddRect", "矩形", "Rectangle", "on_actionAddRect_triggered(bool)", true, Gate::AddBar},
    {"actionAddCircle", "圆形", "Circle", "on_actionAddCircle_triggered(bool)", true, Gate::AddBar},
    {"actionImportCAD", "导入矢量图", "Import drawing", "on_actionImportCAD_triggered()", false, Gate::AddBar},
    {"actionAddText", "绘制文字", "Draw text", "on_actionAddText_triggered(bool)", true, Gate::AddBar},
    {"actionTeaching", "示教", "Teach", "", true, Gate::Add},
    {"actionTeachCircle", "示教圆", "Teach circle", "on_actionTeachCircle_triggered(bool)", true, Gate::Always},
    {"actionTeachArc", "示教圆弧", "Teach arc", "on_actionTeachArc_triggered(bool)", true, Gate::Always},
    {"actionarrayObj", "对象阵列", "Array of objects", "on_actionarrayObj_triggered()", false, Gate::Off},
    {"actionalienation", "曲线异化", "Roughen curves", "on_actionalienation_triggered()", false, Gate::Off},
    {"actionmirrorTB", "上下镜像", "Mirror top/bottom", "on_actionmirrorTB_triggered()", false, Gate::Off},
    {"actionmirrorLR", "左右镜像", "Mirror left/right", "on_actionmirrorLR_triggered()", false, Gate::Off},
    {"actionComposite", "对象组合", "Group", "", false, Gate::Selection},
    {"actionUnComposite", "打散组合", "Ungroup", "", false, Gate::Selection},
    {"actionCompositeLine", "CompositeLine", "Join curves", "", false, Gate::Selection},
    {"actionUnCompositeLine", "DeCompositeLine", "Split curves", "", false, Gate::Selection},
    {"actionAlignLeft", "左对齐", "Align left", "", false, Gate::EditSelected},
    {"actionAlignCenterH", "上下排列", "Align centres horizontally", "", false, Gate::EditSelected},
    {"actionAlignRight", "右对齐", "Align right", "", false, Gate::EditSelected},
    {"actionAlignTop", "上对齐", "Align top", "", false, Gate::EditSelected},
    {"actionAlignCenterV", "左右排列", "Align centres vertically", "", false, Gate::EditSelected},
    {"actionAlignBottom", "下对齐", "Align bottom", "", false, Gate::EditSelected},
    {"actionsameWidth", "使宽度相同", "Same width", "on_actionsameWidth_triggered()", false, Gate::EditSelected},
    {"actionsameHeight", "使高度相同", "Same height", "on_actionsameHeight_triggered()", false, Gate::EditSelected},
    {"actionsameSize", "使大小相同", "Same size", "on_actionsameSize_triggered()", false, Gate::EditSelected},
    {"actionRedLoopPreview", "红光循环预览", "Red-light loop preview", "on_actionRedLoopPreview_triggered()", false,
     Gate::EditSelected},
};

/// A menu or tool bar with what it shows, in its order: names of actions and of sub-menus, "-" for a separator.
struct BarRow {
    char const* name;
    char const* content;
};

inline constexpr BarRow kBarRows[] = {
    {"menuBar", "menuTest menu menu_2 menu_3"},
    {"menuTest", "actionNew actionOpen actionSave actionSaveAs - actionFileManager"},
    {"menu",
     "actionSoftUpdate actionSoftBackup actionHardUpdate actionSetResolution - actionUpdateTime_2 actionSetTime - "
     "actionImportTTFFont - actionReboot actionShutdown actionOpenTerminal actionSetBackImage "
     "actionSetSplashImage - actionShowDebugInfo -"},
    {"menu_2", "actionSystemSet actionMotionSet menuUserManager actionBoxCalib actionIOSet actionCCD - "
               "actionLaserTypeSet menu_4 actionSplitLaserSet - actionFlyMarkingSetting - actionResetVZCard - "
               "actionSetLan action_ResolutionSet"},
    {"menuUserManager", "actionChangeUser actionChangePassWord actionNewUser actionViewPermission"},
    {"menu_4", "action_LaserHostLayin action_LaserHostMAX"},
    {"menu_3", "actionChangeDebug actionShowDoc"},
    {"toolBar_main",
     "action_NewFile actionOpenFlie actionSaveFile actionSaveAll - actionUnDo actionReDo - actionSort - "
     "actionscaleSelect actionscaleRegion actionzoomIn actionzoomOut"},
    {"toolBar", "actionMark actionMultiDocMark"},
    {"toolbar_AddMarkTool",
     "Select actionAddPoint actionaddLine actionAddRect actionAddCircle actionImportCAD actionAddText"},
    {"toolBarAuxiliary",
     "actionTeaching actionTeachCircle actionTeachArc - actionarrayObj actionalienation actionmirrorTB "
     "actionmirrorLR - actionComposite actionUnComposite actionCompositeLine actionUnCompositeLine - "
     "actionAlignLeft actionAlignCenterH actionAlignRight actionAlignTop actionAlignCenterV "
     "actionAlignBottom actionsameWidth actionsameHeight actionsameSize actionRedLoopPreview"},
};

} // namespace tests

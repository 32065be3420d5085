// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// Rights of a user; the bits are stored.
enum Right : unsigned {
    RightNewFile = 0x01,
    RightOpenFile = 0x02,
    RightSaveFile = 0x04,
    RightDeleteFile = 0x08,
    RightAddShape = 0x10,
    RightEditTool = 0x20,
    RightEditParam = 0x40,
    AllRights = 0x7F
};

/// A right and the text that the operator sees.
struct RightRow {
    Right right;
    char const* key;
};

constexpr RightRow kRights[] = {
    {RightNewFile, "新建文件"},       {RightOpenFile, "打开文件"}, {RightSaveFile, "保存文件"},
    {RightDeleteFile, "删除文件"},    {RightAddShape, "添加对象"}, {RightEditTool, "编辑对象"},
    {RightEditParam, "修改打标参数"},
};

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

namespace tests {

// The texts of the answers as their bytes on the wire, written down rather than converted, so that the conversion of
// the program is tested too.
constexpr char kBusyGbk[] = "\xce\xc4\xb5\xb5\xd5\xfd\xd4\xda\xd4\xcb\xd0\xd0\xd6\xd0"; // 文档正在运行中
constexpr char kBadFormatGbk[] = "\xca\xfd\xbe\xdd\xb8\xf1\xca\xbd\xb4\xed\xce\xf3";    // 数据格式错误
constexpr char kBadLengthGbk[] = "\xd3\xd0\xd0\xa7\xca\xfd\xbe\xdd\xb3\xa4\xb6\xc8\xb4\xed\xce\xf3"; // 有效数据长度错误
constexpr char kNoDocumentGbk[] = "\xce\xc4\xb5\xb5\xba\xc5\xb3\xac\xb3\xf6\xb7\xb6\xce\xa7"; // 文档号超出范围
constexpr char kRunFailedGbk[] = "\xce\xc4\xb5\xb5\xd6\xb4\xd0\xd0\xca\xa7\xb0\xdc";          // 文档执行失败
constexpr char kRunDoneGbk[] = "\xce\xc4\xb5\xb5\xd6\xb4\xd0\xd0\xb3\xc9\xb9\xa6";            // 文档执行成功
constexpr char kStoppedGbk[] = "\xd6\xd5\xd6\xb9\xd4\xcb\xd0\xd0\xb3\xc9\xb9\xa6";            // 终止运行成功
constexpr char kAlarmGbk[] = "\xb0\xb2\xc8\xab\xb1\xa8\xbe\xaf";                              // 安全报警

} // namespace tests

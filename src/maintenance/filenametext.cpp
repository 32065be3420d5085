// SPDX-License-Identifier: MIT
#include "maintenance/filenametext.h"

#include "engine/languagemanager.h"

namespace tessera {

char const* FileNameFaultKey(FileNameFault fault) {
    switch (fault) {
    case FileNameFault::None:
        return nullptr;
    case FileNameFault::Empty:
        return "请输入正确的文件名";
    case FileNameFault::BadCharacter:
        return "文件名不能以点开头,也不能包含/等特殊字符";
    case FileNameFault::TooLong:
        break;
    }
    return "文件名太长";
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "maintenance/archivetext.h"

#include "engine/languagemanager.h"

namespace tessera {

char const* ArchiveFaultKey(ArchiveFault fault) {
    switch (fault) {
    case ArchiveFault::None:
    case ArchiveFault::Cancelled:
        return nullptr;
    case ArchiveFault::SourceUnreadable:
        return "有文件无法读取";
    case ArchiveFault::NotWritten:
        return "文件写入失败,请检查磁盘空间";
    case ArchiveFault::NoSpace:
        return "磁盘空间不足";
    case ArchiveFault::NotAnArchive:
        return "文件已损坏或不是压缩包";
    case ArchiveFault::Damaged:
        return "压缩包内的数据已损坏";
    case ArchiveFault::BadName:
        return "压缩包内有不安全的文件名";
    case ArchiveFault::DuplicateName:
        return "压缩包内有重复的文件名";
    case ArchiveFault::SpecialEntry:
        return "压缩包内有链接或特殊文件";
    case ArchiveFault::Encrypted:
        return "压缩包已加密";
    case ArchiveFault::TooManyEntries:
        return "压缩包内的文件太多";
    case ArchiveFault::TooLarge:
        break;
    }
    return "压缩包解压后超过可用空间";
}

} // namespace tessera

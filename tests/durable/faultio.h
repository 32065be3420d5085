// SPDX-License-Identifier: MIT
#pragma once

/// libfaultio.so stands between a program and the C library's file calls and makes chosen ones fail, below chosen
/// directories only. A test links it, or a program is started with it in LD_PRELOAD and these variables:
///   FAULTIO_DIRECTORIES  absolute directories without links, separated by ":"
///   FAULTIO_OPERATIONS   names as in faultio_trace(), separated by ","; all when unset
///   FAULTIO_NTH          the operation to fail, counted from 1; 0 only counts
///   FAULTIO_ERRNO        EIO, ENOSPC, EINVAL, EINTR or a number; EIO when unset
///   FAULTIO_KIND         fail, short, full or lie; fail when unset
///   FAULTIO_STICKY       1: all chosen operations from the n-th on fail
/// The calls are safe from any thread; arming is meant for one thread at a time.

enum FaultOperation : unsigned {
    FaultOpen = 1u << 0,
    FaultRead = 1u << 1,
    FaultWrite = 1u << 2,
    FaultFsync = 1u << 3,
    FaultFdatasync = 1u << 4,
    FaultClose = 1u << 5, ///< the descriptor is closed all the same, as Linux does
    FaultRename = 1u << 6,
    FaultTruncate = 1u << 7,
    FaultMkdir = 1u << 8,
    FaultStat = 1u << 9,
    FaultAttributes = 1u << 10, ///< mode, owner, time stamps
    FaultSyncfs = 1u << 11,
    FaultUnlink = 1u << 12,
    FaultAll = (1u << 13) - 1,
};

enum FaultKind {
    FaultFails, ///< nothing is done, the error is returned
    FaultShort, ///< a write takes half and says so; other operations fail
    FaultFull,  ///< a write takes half and says so, every later one fails; other operations fail
    FaultLies,  ///< a write takes half and says that it took all; other operations succeed without doing anything
};

struct FaultPlan {
    const char* directories;
    unsigned operations;
    int nth;
    int error;
    FaultKind kind;
    bool sticky;
};

extern "C" {
/// Starts to count and to trace, and to fail if plan.nth is above 0.
void faultio_arm(const FaultPlan* plan);
/// Ends it. The number of operations that were made to fail.
int faultio_disarm();
/// Chosen operations seen since the last arming.
int faultio_count();
/// All operations below the directories since the last arming, one a line: "fsync /dir/name"; a failed one ends in "
/// !". Valid until the next arming; at most 64 kilobytes.
const char* faultio_trace();
}

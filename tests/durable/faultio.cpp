// SPDX-License-Identifier: MIT
#include "faultio.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct OperationName {
    unsigned operation;
    const char* name;
};

constexpr OperationName operationNames[] = {
    {FaultOpen, "open"},           {FaultRead, "read"},   {FaultWrite, "write"},           {FaultFsync, "fsync"},
    {FaultFdatasync, "fdatasync"}, {FaultClose, "close"}, {FaultRename, "rename"},         {FaultTruncate, "truncate"},
    {FaultMkdir, "mkdir"},         {FaultStat, "stat"},   {FaultAttributes, "attributes"}, {FaultSyncfs, "syncfs"},
    {FaultUnlink, "unlink"},
};

/// All that the library knows. Constant-initialised: the calls are used before any constructor has run.
struct State {
    std::mutex mutex;
    char directories[4096] = {};
    unsigned operations = 0;
    int nth = 0;
    int error = 0;
    FaultKind kind = FaultFails;
    bool sticky = false;
    int count = 0;
    int injected = 0;
    bool diskFull = false;
    char trace[65536] = {};
    size_t traceLength = 0;
};

State state;
std::atomic<bool> armed{false};

template<typename Function>
Function* next(Function*, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// The call of the same name in the C library.
#define REAL(function) (next(static_cast<decltype(::function)*>(nullptr), #function))

bool isBelow(const char* path) {
    const char* directory = state.directories;
    while (*directory != '\0') {
        const size_t length = std::strcspn(directory, ":");
        if (length > 0 && std::strncmp(path, directory, length) == 0 && (path[length] == '/' || path[length] == '\0'))
            return true;
        directory += length;
        directory += *directory == ':' ? 1 : 0;
    }
    return false;
}

const char* nameOf(unsigned operation) {
    for (const OperationName& entry : operationNames) {
        if (entry.operation == operation)
            return entry.name;
    }
    return "?";
}

void trace(unsigned operation, const char* path, bool fails) {
    const size_t room = sizeof state.trace - state.traceLength;
    const int length =
        std::snprintf(state.trace + state.traceLength, room, "%s %s%s\n", nameOf(operation), path, fails ? " !" : "");
    if (length > 0 && static_cast<size_t>(length) < room)
        state.traceLength += static_cast<size_t>(length);
    else
        state.trace[state.traceLength] = '\0';
}

enum class Verdict { pass, fail, half, lie };

/// Decides on one operation on the absolute path.
Verdict judge(unsigned operation, const char* path) {
    const std::lock_guard<std::mutex> lock(state.mutex);
    if (!isBelow(path))
        return Verdict::pass;
    bool hit = false;
    if ((state.operations & operation) != 0u) {
        ++state.count;
        hit = state.nth > 0 && (state.count == state.nth || (state.sticky && state.count > state.nth));
    }
    const bool later = !hit && state.diskFull && operation == FaultWrite;
    trace(operation, path, hit || later);
    if (!hit && !later)
        return Verdict::pass;
    ++state.injected;
    errno = state.error;
    if (later || state.kind == FaultFails)
        return Verdict::fail;
    if (state.kind == FaultLies)
        return Verdict::lie;
    if (operation != FaultWrite)
        return Verdict::fail;
    state.diskFull = state.kind == FaultFull;
    return Verdict::half;
}

bool absolutePath(int directory, const char* path, char (&out)[PATH_MAX * 2]) {
    if (path[0] == '/') {
        std::snprintf(out, sizeof out, "%s", path);
        return true;
    }
    char link[64];
    if (directory == AT_FDCWD)
        std::snprintf(link, sizeof link, "/proc/self/cwd");
    else
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", directory);
    const ssize_t length = ::readlink(link, out, PATH_MAX);
    if (length <= 0)
        return false;
    if (path[0] == '\0')
        out[length] = '\0';
    else
        std::snprintf(out + length, sizeof out - static_cast<size_t>(length), "/%s", path);
    return true;
}

Verdict judgeAt(unsigned operation, int directory, const char* path) {
    if (!armed.load(std::memory_order_acquire) || path == nullptr)
        return Verdict::pass;
    const int before = errno;
    char absolute[PATH_MAX * 2];
    const bool known = absolutePath(directory, path, absolute);
    errno = before;
    return known ? judge(operation, absolute) : Verdict::pass;
}

Verdict judgeDescriptor(unsigned operation, int descriptor) {
    return judgeAt(operation, descriptor, "");
}

/// For operations that only succeed or fail.
template<typename Call>
auto through(Verdict verdict, Call call) -> decltype(call()) {
    if (verdict == Verdict::pass)
        return call();
    return verdict == Verdict::lie ? 0 : -1;
}

template<typename Call>
ssize_t throughWrite(Verdict verdict, size_t count, Call call) {
    if (verdict == Verdict::pass)
        return call(count);
    if (verdict == Verdict::fail)
        return -1;
    const ssize_t written = count < 2 ? 0 : call(count / 2);
    return verdict == Verdict::lie && written >= 0 ? static_cast<ssize_t>(count) : written;
}

template<typename Call>
int throughOpen(int directory, const char* path, Call call) {
    // An open cannot pretend: there is no descriptor to give.
    return judgeAt(FaultOpen, directory, path) == Verdict::pass ? call() : -1;
}

bool needsMode(int flags) {
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

#define MODE_ARGUMENT(flags, mode)                                                                                     \
    mode_t mode = 0;                                                                                                   \
    if (needsMode(flags)) {                                                                                            \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        mode = static_cast<mode_t>(va_arg(arguments, unsigned));                                                       \
        va_end(arguments);                                                                                             \
    }

int errorNumber(const char* text) {
    if (text == nullptr || std::strcmp(text, "EIO") == 0)
        return EIO;
    if (std::strcmp(text, "ENOSPC") == 0)
        return ENOSPC;
    if (std::strcmp(text, "EINVAL") == 0)
        return EINVAL;
    if (std::strcmp(text, "EINTR") == 0)
        return EINTR;
    return std::atoi(text);
}

FaultKind kindNumber(const char* text) {
    if (text == nullptr)
        return FaultFails;
    if (std::strcmp(text, "short") == 0)
        return FaultShort;
    if (std::strcmp(text, "full") == 0)
        return FaultFull;
    return std::strcmp(text, "lie") == 0 ? FaultLies : FaultFails;
}

unsigned operationSet(const char* names) {
    if (names == nullptr)
        return FaultAll;
    unsigned set = 0;
    while (*names != '\0') {
        const size_t length = std::strcspn(names, ",");
        for (const OperationName& entry : operationNames) {
            if (std::strlen(entry.name) == length && std::strncmp(entry.name, names, length) == 0)
                set |= entry.operation;
        }
        names += length;
        names += *names == ',' ? 1 : 0;
    }
    return set;
}

__attribute__((constructor)) void armFromEnvironment() {
    const char* const directories = std::getenv("FAULTIO_DIRECTORIES");
    const char* const nth = std::getenv("FAULTIO_NTH");
    if (directories == nullptr || nth == nullptr)
        return;
    const char* const sticky = std::getenv("FAULTIO_STICKY");
    const FaultPlan plan = {directories,
                            operationSet(std::getenv("FAULTIO_OPERATIONS")),
                            std::atoi(nth),
                            errorNumber(std::getenv("FAULTIO_ERRNO")),
                            kindNumber(std::getenv("FAULTIO_KIND")),
                            sticky != nullptr && std::strcmp(sticky, "1") == 0};
    faultio_arm(&plan);
}

} // namespace

extern "C" {

void faultio_arm(const FaultPlan* plan) {
    const std::lock_guard<std::mutex> lock(state.mutex);
    std::snprintf(state.directories, sizeof state.directories, "%s", plan->directories);
    state.operations = plan->operations;
    state.nth = plan->nth;
    state.error = plan->error;
    state.kind = plan->kind;
    state.sticky = plan->sticky;
    state.count = 0;
    state.injected = 0;
    state.diskFull = false;
    state.traceLength = 0;
    state.trace[0] = '\0';
    armed.store(true, std::memory_order_release);
}

int faultio_disarm() {
    armed.store(false, std::memory_order_release);
    const std::lock_guard<std::mutex> lock(state.mutex);
    return state.injected;
}

int faultio_count() {
    const std::lock_guard<std::mutex> lock(state.mutex);
    return state.count;
}

const char* faultio_trace() {
    return state.trace;
}

int open(const char* path, int flags, ...) {
    MODE_ARGUMENT(flags, mode)
    return throughOpen(AT_FDCWD, path, [&] { return REAL(open)(path, flags, mode); });
}

int open64(const char* path, int flags, ...) {
    MODE_ARGUMENT(flags, mode)
    return throughOpen(AT_FDCWD, path, [&] { return REAL(open64)(path, flags, mode); });
}

int openat(int directory, const char* path, int flags, ...) {
    MODE_ARGUMENT(flags, mode)
    return throughOpen(directory, path, [&] { return REAL(openat)(directory, path, flags, mode); });
}

int openat64(int directory, const char* path, int flags, ...) {
    MODE_ARGUMENT(flags, mode)
    return throughOpen(directory, path, [&] { return REAL(openat64)(directory, path, flags, mode); });
}

ssize_t read(int descriptor, void* buffer, size_t count) {
    return through(judgeDescriptor(FaultRead, descriptor), [&] { return REAL(read)(descriptor, buffer, count); });
}

ssize_t pread(int descriptor, void* buffer, size_t count, off_t offset) {
    return through(judgeDescriptor(FaultRead, descriptor),
                   [&] { return REAL(pread)(descriptor, buffer, count, offset); });
}

ssize_t pread64(int descriptor, void* buffer, size_t count, off64_t offset) {
    return through(judgeDescriptor(FaultRead, descriptor),
                   [&] { return REAL(pread64)(descriptor, buffer, count, offset); });
}

ssize_t write(int descriptor, const void* buffer, size_t count) {
    return throughWrite(judgeDescriptor(FaultWrite, descriptor), count,
                        [&](size_t part) { return REAL(write)(descriptor, buffer, part); });
}

ssize_t pwrite(int descriptor, const void* buffer, size_t count, off_t offset) {
    return throughWrite(judgeDescriptor(FaultWrite, descriptor), count,
                        [&](size_t part) { return REAL(pwrite)(descriptor, buffer, part, offset); });
}

ssize_t pwrite64(int descriptor, const void* buffer, size_t count, off64_t offset) {
    return throughWrite(judgeDescriptor(FaultWrite, descriptor), count,
                        [&](size_t part) { return REAL(pwrite64)(descriptor, buffer, part, offset); });
}

int fsync(int descriptor) {
    return through(judgeDescriptor(FaultFsync, descriptor), [&] { return REAL(fsync)(descriptor); });
}

int fdatasync(int descriptor) {
    return through(judgeDescriptor(FaultFdatasync, descriptor), [&] { return REAL(fdatasync)(descriptor); });
}

int syncfs(int descriptor) noexcept {
    return through(judgeDescriptor(FaultSyncfs, descriptor), [&] { return REAL(syncfs)(descriptor); });
}

int close(int descriptor) {
    const Verdict verdict = judgeDescriptor(FaultClose, descriptor);
    const int error = errno;
    const int result = REAL(close)(descriptor);
    if (verdict == Verdict::pass || verdict == Verdict::lie)
        return result;
    errno = error;
    return -1;
}

int rename(const char* from, const char* to) noexcept {
    return through(judgeAt(FaultRename, AT_FDCWD, to), [&] { return REAL(rename)(from, to); });
}

int renameat(int fromDirectory, const char* from, int toDirectory, const char* to) noexcept {
    return through(judgeAt(FaultRename, toDirectory, to),
                   [&] { return REAL(renameat)(fromDirectory, from, toDirectory, to); });
}

int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to, unsigned flags) noexcept {
    return through(judgeAt(FaultRename, toDirectory, to),
                   [&] { return REAL(renameat2)(fromDirectory, from, toDirectory, to, flags); });
}

int link(const char* from, const char* to) noexcept {
    return through(judgeAt(FaultRename, AT_FDCWD, to), [&] { return REAL(link)(from, to); });
}

int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags) noexcept {
    return through(judgeAt(FaultRename, toDirectory, to),
                   [&] { return REAL(linkat)(fromDirectory, from, toDirectory, to, flags); });
}

int unlink(const char* path) noexcept {
    return through(judgeAt(FaultUnlink, AT_FDCWD, path), [&] { return REAL(unlink)(path); });
}

int unlinkat(int directory, const char* path, int flags) noexcept {
    return through(judgeAt(FaultUnlink, directory, path), [&] { return REAL(unlinkat)(directory, path, flags); });
}

int ftruncate(int descriptor, off_t length) noexcept {
    return through(judgeDescriptor(FaultTruncate, descriptor), [&] { return REAL(ftruncate)(descriptor, length); });
}

int ftruncate64(int descriptor, off64_t length) noexcept {
    return through(judgeDescriptor(FaultTruncate, descriptor), [&] { return REAL(ftruncate64)(descriptor, length); });
}

int mkdir(const char* path, mode_t mode) noexcept {
    return through(judgeAt(FaultMkdir, AT_FDCWD, path), [&] { return REAL(mkdir)(path, mode); });
}

int stat(const char* path, struct stat* status) noexcept {
    return through(judgeAt(FaultStat, AT_FDCWD, path), [&] { return REAL(stat)(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
    return through(judgeAt(FaultStat, AT_FDCWD, path), [&] { return REAL(lstat)(path, status); });
}

int fstat(int descriptor, struct stat* status) noexcept {
    return through(judgeDescriptor(FaultStat, descriptor), [&] { return REAL(fstat)(descriptor, status); });
}

/// ThreadSanitizer's own fstat() goes on to this older name.
int __fxstat(int, int descriptor, struct stat* status) noexcept {
    return through(judgeDescriptor(FaultStat, descriptor), [&] { return REAL(fstat)(descriptor, status); });
}

int fchmod(int descriptor, mode_t mode) noexcept {
    return through(judgeDescriptor(FaultAttributes, descriptor), [&] { return REAL(fchmod)(descriptor, mode); });
}

int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
    return through(judgeDescriptor(FaultAttributes, descriptor),
                   [&] { return REAL(fchown)(descriptor, owner, group); });
}

int futimens(int descriptor, const struct timespec times[2]) noexcept {
    return through(judgeDescriptor(FaultAttributes, descriptor), [&] { return REAL(futimens)(descriptor, times); });
}

} // extern "C"

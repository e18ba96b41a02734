// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/system_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <vector>

namespace complexion {

namespace {

struct Fault {
    int error = 0;
    int skipped = 0;
    int left = 0;
    int failed = 0;
};

thread_local std::array<Fault, static_cast<std::size_t>(SystemCall::Writev) + 1> faults;
thread_local std::string lastRenamedPath;
thread_local int vainCloses = 0;
thread_local int vainUnlinks = 0;
thread_local int inheritableCalls = 0;
thread_local std::size_t maxTransfer = std::numeric_limits<std::size_t>::max();

Fault& faultOf(SystemCall call) {
    return faults[static_cast<std::size_t>(call)];
}

/// The errno with which this call must fail; 0 if it must not.
int errorOf(SystemCall call) {
    Fault& fault = faultOf(call);
    if (fault.left == 0 || fault.skipped-- > 0)
        return 0;
    fault.skipped = 0;
    --fault.left;
    ++fault.failed;
    return fault.error;
}

void countIfInheritable(int fd) {
    const int flags = ::fcntl(fd, F_GETFD);
    inheritableCalls += flags >= 0 && (flags & FD_CLOEXEC) == 0 ? 1 : 0;
}

/// The C library's function of this name.
template <class Function>
Function* original(Function*, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// Calls the library's function, or returns -1 with errno set if this call must fail.
template <class Function, class... Arguments>
auto calledOrFailed(SystemCall call, Function* self, const char* name, Arguments... arguments) {
    if (const int error = errorOf(call)) {
        errno = error;
        return static_cast<decltype(self(arguments...))>(-1);
    }
    return original(self, name)(arguments...);
}

} // namespace

CountedCalls::CountedCalls() {
    vainCloses = 0;
    vainUnlinks = 0;
    inheritableCalls = 0;
}

int CountedCalls::invalidCloses() const {
    return vainCloses;
}

int CountedCalls::invalidUnlinks() const {
    return vainUnlinks;
}

int CountedCalls::inheritable() const {
    return inheritableCalls;
}

const std::string& lastRenamed() {
    return lastRenamedPath;
}

FailingCalls::FailingCalls(SystemCall call, int error, int times, int skipped) : m_call(call) {
    faultOf(call) = {.error = error, .skipped = skipped, .left = times};
}

FailingCalls::~FailingCalls() {
    faultOf(m_call) = {};
}

int FailingCalls::failedCount() const {
    return faultOf(m_call).failed;
}

ShortTransfers::ShortTransfers(std::size_t max) {
    maxTransfer = max;
}

ShortTransfers::~ShortTransfers() {
    maxTransfer = std::numeric_limits<std::size_t>::max();
}

} // namespace complexion

using namespace complexion;

// These definitions in the program take precedence over the C library's.

extern "C" {

int access(const char* path, int mode) noexcept {
    return calledOrFailed(SystemCall::Access, &access, "access", path, mode);
}

int close(int fd) {
    vainCloses += fcntl(fd, F_GETFD) < 0 ? 1 : 0;
    return calledOrFailed(SystemCall::Close, &close, "close", fd);
}

int fchmod(int fd, mode_t mode) noexcept {
    countIfInheritable(fd);
    return calledOrFailed(SystemCall::Fchmod, &fchmod, "fchmod", fd, mode);
}

int flock(int fd, int operation) noexcept {
    return calledOrFailed(SystemCall::Flock, &flock, "flock", fd, operation);
}

int fstat(int fd, struct stat* status) noexcept {
    return calledOrFailed(SystemCall::Fstat, &fstat, "fstat", fd, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
    return calledOrFailed(SystemCall::Fstatat, &fstatat, "fstatat", folder, path, status, flags);
}

int fsync(int fd) {
    countIfInheritable(fd);
    return calledOrFailed(SystemCall::Fsync, &fsync, "fsync", fd);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    return calledOrFailed(SystemCall::Linkat, &linkat, "linkat", fromFolder, from, toFolder, to, flags);
}

int lstat(const char* path, struct stat* status) noexcept {
    return calledOrFailed(SystemCall::Lstat, &lstat, "lstat", path, status);
}

int mkdir(const char* path, mode_t mode) noexcept {
    return calledOrFailed(SystemCall::Mkdir, &mkdir, "mkdir", path, mode);
}

int open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return calledOrFailed(SystemCall::Open, &open, "open", path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return calledOrFailed(SystemCall::Openat, &openat, "openat", folder, path, flags, mode);
}

int posix_fallocate(int fd, off_t offset, off_t length) {
    if (const int error = errorOf(SystemCall::PosixFallocate))
        return error;
    return original(&posix_fallocate, "posix_fallocate")(fd, offset, length);
}

ssize_t pread(int fd, void* buffer, std::size_t count, off_t position) {
    return calledOrFailed(SystemCall::Pread, &pread, "pread", fd, buffer, std::min(count, maxTransfer),
                          position);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*work)(void*),
                   void* argument) noexcept {
    if (const int error = errorOf(SystemCall::PthreadCreate))
        return error;
    return original(&pthread_create, "pthread_create")(thread, attributes, work, argument);
}

ssize_t pwrite(int fd, const void* bytes, std::size_t count, off_t position) {
    return calledOrFailed(SystemCall::Pwrite, &pwrite, "pwrite", fd, bytes, std::min(count, maxTransfer),
                          position);
}

ssize_t read(int fd, void* buffer, std::size_t count) {
    countIfInheritable(fd);
    return calledOrFailed(SystemCall::Read, &read, "read", fd, buffer, std::min(count, maxTransfer));
}

int rename(const char* from, const char* to) noexcept {
    lastRenamedPath = from;
    return calledOrFailed(SystemCall::Rename, &rename, "rename", from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    return calledOrFailed(SystemCall::Renameat2, &renameat2, "renameat2", fromFolder, from, toFolder, to,
                          flags);
}

int syncfs(int fd) noexcept {
    return calledOrFailed(SystemCall::Syncfs, &syncfs, "syncfs", fd);
}

int unlink(const char* path) noexcept {
    const int result = calledOrFailed(SystemCall::Unlink, &unlink, "unlink", path);
    vainUnlinks += result != 0 && errno == ENOENT ? 1 : 0;
    return result;
}

ssize_t writev(int fd, const iovec* parts, int count) {
    countIfInheritable(fd);
    std::vector<iovec> taken(parts, parts + count);
    std::size_t left = maxTransfer;
    for (iovec& part : taken) {
        part.iov_len = std::min(part.iov_len, left);
        left -= part.iov_len;
    }
    return calledOrFailed(SystemCall::Writev, &writev, "writev", fd, static_cast<const iovec*>(taken.data()),
                          count);
}
}

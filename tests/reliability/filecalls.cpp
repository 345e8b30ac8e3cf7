// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The C library's file calls, under the names that Qt and the library call them by.
#include "faultwatch.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

using namespace faultshim;

namespace {

/// The function that would have been called without this library.
template <typename Function>
Function *next(const char *name)
{
    void *const address = dlsym(RTLD_NEXT, name);
    if (!address)
        abort();
    return reinterpret_cast<Function *>(address);
}

bool takesMode(int flags)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

/// Does \p call, or answers -1 in its stead.
template <typename Call>
auto perform(Event event, Call call) -> decltype(call())
{
    if (pass(std::move(event)) == Verdict::Fail)
        return -1;
    const auto result = call();
    answered(result);
    return result;
}

template <typename Call>
int byName(Kind kind, int directory, const char *name, Call call)
{
    if (!watching() || !name)
        return call();
    const std::string path = absolute(directory, name);
    return concerns(path) ? perform({kind, path}, call) : call();
}

template <typename Call>
auto byDescriptor(Kind kind, int descriptor, Call call, long long offset = -1) -> decltype(call())
{
    if (!watching() || pathOf(descriptor).empty())
        return call();
    return perform({kind, pathOf(descriptor), {}, descriptor, 0, offset}, call);
}

template <typename Call>
int opening(int directory, const char *name, int flags, Call call)
{
    if (!watching())
        return call();
    const std::string path = absolute(directory, name);
    if (!concerns(path))
        return call();
    const int descriptor = perform({Kind::Open, path, {}, -1, flags}, call);
    if (descriptor >= 0)
        remember(descriptor, path);
    return descriptor;
}

template <typename Call>
int moving(Kind kind, int fromDirectory, const char *from, int toDirectory, const char *to, Call call)
{
    if (!watching())
        return call();
    const std::string path = absolute(fromDirectory, from);
    const std::string target = absolute(toDirectory, to);
    return concerns(path) || concerns(target) ? perform({kind, path, target}, call) : call();
}

/// \p call takes the number of bytes to write.
template <typename Call>
ssize_t writing(int descriptor, const void *bytes, size_t count, long long offset, Call call)
{
    if (!watching() || pathOf(descriptor).empty())
        return call(count);
    const Verdict verdict = pass({Kind::Write,
                                  pathOf(descriptor),
                                  {},
                                  descriptor,
                                  0,
                                  offset,
                                  std::string(static_cast<const char *>(bytes), count)});
    if (verdict == Verdict::Fail)
        return -1;
    const ssize_t written = call(verdict == Verdict::Half ? (count + 1) / 2 : count);
    answered(written);
    return written;
}

} // namespace

extern "C" {

#define SHIM __attribute__((visibility("default")))

// The mode is passed on whether it was given or not, as the kernel takes it.
#define OPEN(function)                                                                                       \
    SHIM int function(const char *name, int flags, ...)                                                      \
    {                                                                                                        \
        va_list rest;                                                                                        \
        va_start(rest, flags);                                                                               \
        const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;                                     \
        va_end(rest);                                                                                        \
        static auto *const real = next<int(const char *, int, ...)>(#function);                              \
        return opening(AT_FDCWD, name, flags, [&] { return real(name, flags, mode); });                      \
    }
#define OPENAT(function)                                                                                     \
    SHIM int function(int directory, const char *name, int flags, ...)                                       \
    {                                                                                                        \
        va_list rest;                                                                                        \
        va_start(rest, flags);                                                                               \
        const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;                                     \
        va_end(rest);                                                                                        \
        static auto *const real = next<int(int, const char *, int, ...)>(#function);                         \
        return opening(directory, name, flags, [&] { return real(directory, name, flags, mode); });          \
    }
OPEN(open)
OPEN(open64)
OPENAT(openat)
OPENAT(openat64)

SHIM int creat(const char *name, mode_t mode)
{
    return open(name, O_CREAT | O_WRONLY | O_TRUNC, mode);
}

SHIM int creat64(const char *name, mode_t mode)
{
    return open64(name, O_CREAT | O_WRONLY | O_TRUNC, mode);
}

// What the checked build of a caller calls instead.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the C library's
SHIM int __open_2(const char *name, int flags)
{
    return open(name, flags);
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C library's
SHIM int __open64_2(const char *name, int flags)
{
    return open64(name, flags);
}

SHIM int close(int descriptor)
{
    static auto *const real = next<int(int)>("close");
    if (!watching() || pathOf(descriptor).empty())
        return real(descriptor);
    const std::string path = pathOf(descriptor);
    forget(descriptor);
    const Verdict verdict = pass({Kind::Close, path, {}, descriptor});
    const int error = errno;
    // A descriptor is gone after close(), whatever that answers.
    const int result = real(descriptor);
    if (verdict == Verdict::Fail) {
        errno = error;
        return -1;
    }
    return result;
}

SHIM ssize_t read(int descriptor, void *bytes, size_t count)
{
    static auto *const real = next<ssize_t(int, void *, size_t)>("read");
    return byDescriptor(Kind::Read, descriptor, [&] { return real(descriptor, bytes, count); });
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C library's
SHIM ssize_t __read_chk(int descriptor, void *bytes, size_t count, size_t)
{
    return read(descriptor, bytes, count);
}

SHIM ssize_t pread64(int descriptor, void *bytes, size_t count, off64_t offset)
{
    static auto *const real = next<ssize_t(int, void *, size_t, off64_t)>("pread64");
    return byDescriptor(Kind::Read, descriptor, [&] { return real(descriptor, bytes, count, offset); });
}

SHIM ssize_t write(int descriptor, const void *bytes, size_t count)
{
    static auto *const real = next<ssize_t(int, const void *, size_t)>("write");
    return writing(descriptor, bytes, count, -1,
                   [&](size_t length) { return real(descriptor, bytes, length); });
}

SHIM ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset)
{
    static auto *const real = next<ssize_t(int, const void *, size_t, off_t)>("pwrite");
    return writing(descriptor, bytes, count, offset,
                   [&](size_t length) { return real(descriptor, bytes, length, offset); });
}

SHIM ssize_t pwrite64(int descriptor, const void *bytes, size_t count, off64_t offset)
{
    static auto *const real = next<ssize_t(int, const void *, size_t, off64_t)>("pwrite64");
    return writing(descriptor, bytes, count, offset,
                   [&](size_t length) { return real(descriptor, bytes, length, offset); });
}

SHIM ssize_t writev(int descriptor, const iovec *parts, int count)
{
    if (!watching() || pathOf(descriptor).empty()) {
        static auto *const real = next<ssize_t(int, const iovec *, int)>("writev");
        return real(descriptor, parts, count);
    }
    std::string bytes;
    for (int i = 0; i < count; ++i)
        bytes.append(static_cast<const char *>(parts[i].iov_base), parts[i].iov_len);
    return write(descriptor, bytes.data(), bytes.size());
}

SHIM int fsync(int descriptor)
{
    static auto *const real = next<int(int)>("fsync");
    return byDescriptor(Kind::Sync, descriptor, [&] { return real(descriptor); });
}

SHIM int fdatasync(int descriptor)
{
    static auto *const real = next<int(int)>("fdatasync");
    return byDescriptor(Kind::Sync, descriptor, [&] { return real(descriptor); });
}

SHIM int ftruncate(int descriptor, off_t length) noexcept
{
    static auto *const real = next<int(int, off_t)>("ftruncate");
    return byDescriptor(
        Kind::Truncate, descriptor, [&] { return real(descriptor, length); }, length);
}

SHIM int ftruncate64(int descriptor, off64_t length) noexcept
{
    static auto *const real = next<int(int, off64_t)>("ftruncate64");
    return byDescriptor(
        Kind::Truncate, descriptor, [&] { return real(descriptor, length); }, length);
}

SHIM int fchmod(int descriptor, mode_t mode) noexcept
{
    static auto *const real = next<int(int, mode_t)>("fchmod");
    return byDescriptor(Kind::Mode, descriptor, [&] { return real(descriptor, mode); });
}

SHIM int fchown(int descriptor, uid_t owner, gid_t group) noexcept
{
    static auto *const real = next<int(int, uid_t, gid_t)>("fchown");
    return byDescriptor(Kind::Mode, descriptor, [&] { return real(descriptor, owner, group); });
}

SHIM int chmod(const char *name, mode_t mode) noexcept
{
    static auto *const real = next<int(const char *, mode_t)>("chmod");
    return byName(Kind::Mode, AT_FDCWD, name, [&] { return real(name, mode); });
}

SHIM int rename(const char *from, const char *to) noexcept
{
    static auto *const real = next<int(const char *, const char *)>("rename");
    return moving(Kind::Rename, AT_FDCWD, from, AT_FDCWD, to, [&] { return real(from, to); });
}

SHIM int renameat(int fromDirectory, const char *from, int toDirectory, const char *to) noexcept
{
    static auto *const real = next<int(int, const char *, int, const char *)>("renameat");
    return moving(Kind::Rename, fromDirectory, from, toDirectory, to,
                  [&] { return real(fromDirectory, from, toDirectory, to); });
}

SHIM int renameat2(int fromDirectory, const char *from, int toDirectory, const char *to,
                   unsigned int flags) noexcept
{
    static auto *const real = next<int(int, const char *, int, const char *, unsigned int)>("renameat2");
    return moving(Kind::Rename, fromDirectory, from, toDirectory, to,
                  [&] { return real(fromDirectory, from, toDirectory, to, flags); });
}

SHIM int link(const char *from, const char *to) noexcept
{
    static auto *const real = next<int(const char *, const char *)>("link");
    return moving(Kind::Link, AT_FDCWD, from, AT_FDCWD, to, [&] { return real(from, to); });
}

SHIM int linkat(int fromDirectory, const char *from, int toDirectory, const char *to, int flags) noexcept
{
    static auto *const real = next<int(int, const char *, int, const char *, int)>("linkat");
    return moving(Kind::Link, fromDirectory, from, toDirectory, to,
                  [&] { return real(fromDirectory, from, toDirectory, to, flags); });
}

SHIM int unlink(const char *name) noexcept
{
    static auto *const real = next<int(const char *)>("unlink");
    return byName(Kind::Unlink, AT_FDCWD, name, [&] { return real(name); });
}

SHIM int unlinkat(int directory, const char *name, int flags) noexcept
{
    static auto *const real = next<int(int, const char *, int)>("unlinkat");
    return byName(Kind::Unlink, directory, name, [&] { return real(directory, name, flags); });
}

SHIM int remove(const char *name) noexcept
{
    static auto *const real = next<int(const char *)>("remove");
    return byName(Kind::Unlink, AT_FDCWD, name, [&] { return real(name); });
}

SHIM int stat(const char *name, struct stat *status) noexcept
{
    static auto *const real = next<int(const char *, struct stat *)>("stat");
    return byName(Kind::Look, AT_FDCWD, name, [&] { return real(name, status); });
}

SHIM int stat64(const char *name, struct stat64 *status) noexcept
{
    static auto *const real = next<int(const char *, struct stat64 *)>("stat64");
    return byName(Kind::Look, AT_FDCWD, name, [&] { return real(name, status); });
}

SHIM int lstat(const char *name, struct stat *status) noexcept
{
    static auto *const real = next<int(const char *, struct stat *)>("lstat");
    return byName(Kind::Look, AT_FDCWD, name, [&] { return real(name, status); });
}

SHIM int lstat64(const char *name, struct stat64 *status) noexcept
{
    static auto *const real = next<int(const char *, struct stat64 *)>("lstat64");
    return byName(Kind::Look, AT_FDCWD, name, [&] { return real(name, status); });
}

SHIM int fstat(int descriptor, struct stat *status) noexcept
{
    static auto *const real = next<int(int, struct stat *)>("fstat");
    return byDescriptor(Kind::Look, descriptor, [&] { return real(descriptor, status); });
}

SHIM int fstat64(int descriptor, struct stat64 *status) noexcept
{
    static auto *const real = next<int(int, struct stat64 *)>("fstat64");
    return byDescriptor(Kind::Look, descriptor, [&] { return real(descriptor, status); });
}

SHIM int statx(int directory, const char *name, int flags, unsigned int mask, struct statx *status) noexcept
{
    static auto *const real = next<int(int, const char *, int, unsigned int, struct statx *)>("statx");
    const auto call = [&] { return real(directory, name, flags, mask, status); };
    if (name[0] == '\0')
        return byDescriptor(Kind::Look, directory, call);
    return byName(Kind::Look, directory, name, call);
}

SHIM int access(const char *name, int mode) noexcept
{
    static auto *const real = next<int(const char *, int)>("access");
    return byName(Kind::Look, AT_FDCWD, name, [&] { return real(name, mode); });
}

SHIM char *realpath(const char *name, char *resolved) noexcept
{
    static auto *const real = next<char *(const char *, char *)>("realpath");
    char *result = nullptr;
    byName(Kind::Look, AT_FDCWD, name, [&] {
        result = real(name, resolved);
        return result ? 0 : -1;
    });
    return result;
}

} // extern "C"

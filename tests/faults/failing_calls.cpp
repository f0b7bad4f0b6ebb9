// SPDX-License-Identifier: MIT
// A library to preload into a program: one of its calls on the files below a folder fails, kills it
// or interrupts it. Used by the sweep. Calls that the C library makes for itself cannot be seen
// from here. [any]
//
// The environment says what happens:
//
//   FAULT_ROOT   the folder
//   FAULT_CALL   the number of the call, from 1; 0: none, the calls are only counted
//   FAULT_KIND   "once": that call fails with FAULT_ERROR, an errno value; "gone": it fails and so
//                do all later ones, as if the volume had been pulled out; "kill": the process is
//                killed instead of the call, or half-way through it if it writes; "stop": the
//                process gets a SIGINT, and the call is made; "wait": the call is made once the
//                file FAULT_GATE does not exist any more
//   FAULT_LOG    a file that gets a line for each counted call: its name and its path

#include <gps/NumberText.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

namespace {

/// The C library's own function of this name.
template <typename Function> Function* original(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

std::string setting(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

int number(const char* name)
{
    return static_cast<int>(gps::wholeUnsigned(setting(name)).value_or(0));
}

struct Settings {
    std::string root = setting("FAULT_ROOT");
    int call = number("FAULT_CALL");
    std::string kind = setting("FAULT_KIND");
    std::string gate = setting("FAULT_GATE");
    int error = number("FAULT_ERROR");
    int log = original<int(const char*, int, ...)>("open")(
        setting("FAULT_LOG").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
};

const Settings& settings()
{
    static const Settings read;
    return read;
}

bool isBelowRoot(std::string_view path)
{
    const std::string_view root = settings().root;
    return !root.empty() && path.starts_with(root) &&
           (path.size() == root.size() || path[root.size()] == '/');
}

std::string pathOf(int file)
{
    char path[4096];
    const auto link = "/proc/self/fd/" + std::to_string(file);
    const auto length = ::readlink(link.c_str(), path, sizeof path);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : "";
}

std::string pathIn(int folder, const char* name)
{
    return *name == '/' || folder == AT_FDCWD ? name : pathOf(folder) + '/' + name;
}

[[noreturn]] void die()
{
    ::kill(::getpid(), SIGKILL);
    ::pause();
    std::abort();
}

void log(std::string_view name, const std::string& path)
{
    auto line = std::string{name} + ' ' + path;
    line += '\n';
    (void)original<decltype(::write)>("write")(settings().log, line.data(), line.size());
}

struct Fault {
    bool kills = false;
    int error = 0; // 0: the call is made
};

/// Counts a call on a path.
/// @param whenGone  the error of such a call on a volume that was pulled out
Fault faultOf(std::string_view name, const std::string& path, int whenGone)
{
    static std::atomic<int> calls = 0;
    if (!isBelowRoot(path))
        return {};
    const auto& now = settings();
    const int present = ++calls;
    log(name, path);
    if (now.call == 0 || present < now.call || (present > now.call && now.kind != "gone"))
        return {};
    if (now.kind == "kill")
        return {true, 0};
    if (now.kind == "stop") {
        ::kill(::getpid(), SIGINT);
        return {};
    }
    if (now.kind == "wait") {
        while (::access(now.gate.c_str(), F_OK) == 0)
            ::usleep(10'000);
        return {};
    }
    return {false, now.kind == "gone" ? whenGone : now.error};
}

/// Makes a call, or sets errno and returns the value with which such a call fails.
template <typename Result, typename Call>
Result guarded(const Fault& fault, Result failed, Call call)
{
    if (fault.kills)
        die();
    if (fault.error == 0)
        return call();
    errno = fault.error;
    return failed;
}

template <typename Call> int onPath(const char* name, const std::string& path, Call call)
{
    return guarded(faultOf(name, path, ENOENT), -1, call);
}

template <typename Call> int onFile(const char* name, int file, Call call)
{
    return guarded(faultOf(name, pathOf(file), EIO), -1, call);
}

} // namespace

// Each function below replaces the C library's of the same name, which it calls.
extern "C" {

int open(const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    static auto* const call = original<int(const char*, int, ...)>("open");
    return onPath("open", path, [&] { return call(path, flags, mode); });
}

int openat(int folder, const char* name, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    static auto* const call = original<int(int, const char*, int, ...)>("openat");
    return onPath("openat", pathIn(folder, name), [&] { return call(folder, name, flags, mode); });
}

// A close that fails has closed the file all the same.
int close(int file)
{
    static auto* const call = original<int(int)>("close");
    const auto fault = faultOf("close", pathOf(file), EIO);
    const int result = fault.kills ? 0 : call(file);
    return guarded(fault, -1, [&] { return result; });
}

ssize_t read(int file, void* buffer, std::size_t size)
{
    static auto* const call = original<ssize_t(int, void*, std::size_t)>("read");
    return guarded(faultOf("read", pathOf(file), EIO), ssize_t{-1},
                   [&] { return call(file, buffer, size); });
}

ssize_t pread(int file, void* buffer, std::size_t size, off_t offset)
{
    static auto* const call = original<ssize_t(int, void*, std::size_t, off_t)>("pread");
    return guarded(faultOf("pread", pathOf(file), EIO), ssize_t{-1},
                   [&] { return call(file, buffer, size, offset); });
}

ssize_t write(int file, const void* data, std::size_t size)
{
    static auto* const call = original<ssize_t(int, const void*, std::size_t)>("write");
    const auto fault = faultOf("write", pathOf(file), EIO);
    if (fault.kills)
        (void)call(file, data, size / 2);
    return guarded(fault, ssize_t{-1}, [&] { return call(file, data, size); });
}

ssize_t pwrite(int file, const void* data, std::size_t size, off_t offset)
{
    static auto* const call = original<ssize_t(int, const void*, std::size_t, off_t)>("pwrite");
    const auto fault = faultOf("pwrite", pathOf(file), EIO);
    if (fault.kills)
        (void)call(file, data, size / 2, offset);
    return guarded(fault, ssize_t{-1}, [&] { return call(file, data, size, offset); });
}

int fsync(int file)
{
    static auto* const call = original<int(int)>("fsync");
    return onFile("fsync", file, [&] { return call(file); });
}

// Everything is on vfat, as on a receiver, so that all calls that it needs are made.
int fstatfs(int file, struct statfs* out) noexcept
{
    static auto* const call = original<int(int, struct statfs*)>("fstatfs");
    const int result = call(file, out);
    out->f_type = MSDOS_SUPER_MAGIC;
    return result;
}

int ftruncate(int file, off_t size) noexcept
{
    static auto* const call = original<int(int, off_t)>("ftruncate");
    return onFile("ftruncate", file, [&] { return call(file, size); });
}

int fchmod(int file, mode_t mode) noexcept
{
    static auto* const call = original<int(int, mode_t)>("fchmod");
    return onFile("fchmod", file, [&] { return call(file, mode); });
}

int flock(int file, int operation) noexcept
{
    static auto* const call = original<int(int, int)>("flock");
    return onFile("flock", file, [&] { return call(file, operation); });
}

int fstat(int file, struct stat* out) noexcept
{
    static auto* const call = original<int(int, struct stat*)>("fstat");
    return onFile("fstat", file, [&] { return call(file, out); });
}

int stat(const char* path, struct stat* out) noexcept
{
    static auto* const call = original<int(const char*, struct stat*)>("stat");
    return onPath("stat", path, [&] { return call(path, out); });
}

int lstat(const char* path, struct stat* out) noexcept
{
    static auto* const call = original<int(const char*, struct stat*)>("lstat");
    return onPath("lstat", path, [&] { return call(path, out); });
}

int fstatat(int folder, const char* name, struct stat* out, int flags) noexcept
{
    static auto* const call = original<int(int, const char*, struct stat*, int)>("fstatat");
    return onPath("fstatat", pathIn(folder, name), [&] { return call(folder, name, out, flags); });
}

int faccessat(int folder, const char* name, int mode, int flags) noexcept
{
    static auto* const call = original<int(int, const char*, int, int)>("faccessat");
    return onPath("faccessat", pathIn(folder, name),
                  [&] { return call(folder, name, mode, flags); });
}

int mkdir(const char* path, mode_t mode) noexcept
{
    static auto* const call = original<int(const char*, mode_t)>("mkdir");
    return onPath("mkdir", path, [&] { return call(path, mode); });
}

int rename(const char* from, const char* to) noexcept
{
    static auto* const call = original<int(const char*, const char*)>("rename");
    return onPath("rename", from, [&] { return call(from, to); });
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
    static auto* const call = original<int(int, const char*, int, const char*)>("renameat");
    return onPath("renameat", pathIn(fromFolder, from),
                  [&] { return call(fromFolder, from, toFolder, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept
{
    static auto* const call =
        original<int(int, const char*, int, const char*, unsigned)>("renameat2");
    return onPath("renameat2", pathIn(fromFolder, from),
                  [&] { return call(fromFolder, from, toFolder, to, flags); });
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    static auto* const call = original<int(int, const char*, int, const char*, int)>("linkat");
    return onPath("linkat", pathIn(toFolder, to),
                  [&] { return call(fromFolder, from, toFolder, to, flags); });
}

int unlink(const char* path) noexcept
{
    static auto* const call = original<int(const char*)>("unlink");
    return onPath("unlink", path, [&] { return call(path); });
}

int unlinkat(int folder, const char* name, int flags) noexcept
{
    static auto* const call = original<int(int, const char*, int)>("unlinkat");
    return onPath("unlinkat", pathIn(folder, name), [&] { return call(folder, name, flags); });
}

char* realpath(const char* path, char* out) noexcept
{
    static auto* const call = original<char*(const char*, char*)>("realpath");
    return guarded(faultOf("realpath", path, ENOENT), static_cast<char*>(nullptr),
                   [&] { return call(path, out); });
}

DIR* opendir(const char* path)
{
    static auto* const call = original<DIR*(const char*)>("opendir");
    return guarded(faultOf("opendir", path, ENOENT), static_cast<DIR*>(nullptr),
                   [&] { return call(path); });
}

dirent* readdir(DIR* folder)
{
    static auto* const call = original<dirent*(DIR*)>("readdir");
    return guarded(faultOf("readdir", pathOf(::dirfd(folder)), EIO), static_cast<dirent*>(nullptr),
                   [&] { return call(folder); });
}

} // extern "C"

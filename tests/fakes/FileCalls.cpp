#include "tests/fakes/FileCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <utility>

namespace fakes {

namespace {

thread_local FileCalls* watcher = nullptr;

// Out of the watcher's sight, for what it does itself.
class Unwatched {
public:
    Unwatched() : watching(std::exchange(watcher, nullptr)) {}
    ~Unwatched() { watcher = watching; }
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

    FileCalls* const watching;
};

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// 0 for a call that goes its way, the errno of one that fails, -1 for one that ends after a byte.
int faultOf(FileCall call, const char* path) {
    const Unwatched self;
    if (self.watching == nullptr || !self.watching->count(call, path)) return 0;
    return self.watching->error() == 0 ? -1 : self.watching->error();
}

int faultOf(FileCall call, int descriptor) {
    if (watcher == nullptr) return 0;
    return faultOf(call, watcher->pathOf(descriptor).c_str());
}

int openFile(const char* name, const char* path, int flags, mode_t mode) {
    if (const int fault = faultOf(FileCall::OPEN, path); fault > 0) {
        errno = fault;
        return -1;
    }
    const int descriptor = next<int (*)(const char*, int, ...)>(name)(path, flags, mode);
    const Unwatched self;
    if (self.watching != nullptr) self.watching->noteOpen(path, descriptor);
    return descriptor;
}

FILE* openStream(const char* name, const char* path, const char* mode) {
    if (const int fault = faultOf(FileCall::OPEN, path); fault > 0) {
        errno = fault;
        return nullptr;
    }
    FILE* const stream = next<FILE* (*)(const char*, const char*)>(name)(path, mode);
    const Unwatched self;
    if (self.watching != nullptr) self.watching->noteOpen(path, stream == nullptr ? -1 : fileno(stream));
    return stream;
}

template <typename Status>
int statFile(const char* name, FileCall call, const char* path, Status* status) {
    if (const int fault = faultOf(call, path); fault > 0) {
        errno = fault;
        return -1;
    }
    return next<int (*)(const char*, Status*)>(name)(path, status);
}

mode_t modeOf(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

FileCalls::FileCalls(FileFault fault) : planned(fault) {
    watcher = this;
}

FileCalls::~FileCalls() {
    watcher = nullptr;
}

bool FileCalls::count(FileCall call, const std::string& path) {
    if (++counts[call] != planned.at || call != planned.call) return false;
    victim = path;
    return true;
}

void FileCalls::noteOpen(const std::string& path, int descriptor) {
    paths.push_back(path);
    if (descriptor >= 0) descriptors[descriptor] = path;
}

std::string FileCalls::pathOf(int descriptor) const {
    const auto found = descriptors.find(descriptor);
    return found == descriptors.end() ? "" : found->second;
}

size_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

}  // namespace fakes

// In front of the C library's own, for the program and for the shared libraries that it uses.
extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = fakes::modeOf(flags, arguments);
    va_end(arguments);
    return fakes::openFile("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = fakes::modeOf(flags, arguments);
    va_end(arguments);
    return fakes::openFile("open64", path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
    return fakes::openStream("fopen", path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
    return fakes::openStream("fopen64", path, mode);
}

ssize_t read(int descriptor, void* buffer, size_t size) {
    const int fault = fakes::faultOf(fakes::FileCall::READ, descriptor);
    if (fault > 0) {
        errno = fault;
        return -1;
    }
    static const auto real = fakes::next<ssize_t (*)(int, void*, size_t)>("read");
    return real(descriptor, buffer, fault < 0 ? std::min<size_t>(size, 1) : size);
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
    const int fault = fakes::faultOf(fakes::FileCall::WRITE, descriptor);
    if (fault > 0) {
        errno = fault;
        return -1;
    }
    static const auto real = fakes::next<ssize_t (*)(int, const void*, size_t)>("write");
    return real(descriptor, bytes, fault < 0 ? std::min<size_t>(size, 1) : size);
}

int access(const char* path, int mode) noexcept {
    if (const int fault = fakes::faultOf(fakes::FileCall::ACCESS, path); fault > 0) {
        errno = fault;
        return -1;
    }
    return fakes::next<int (*)(const char*, int)>("access")(path, mode);
}

int stat(const char* path, struct stat* status) noexcept {
    return fakes::statFile("stat", fakes::FileCall::STAT, path, status);
}

int stat64(const char* path, struct stat64* status) noexcept {
    return fakes::statFile("stat64", fakes::FileCall::STAT64, path, status);
}

}  // extern "C"

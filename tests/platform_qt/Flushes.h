#pragma once
// How often this process has asked the system to make a file safe. What is committed must be counted here
// before it is confirmed: after lost power nothing else would tell.

#include <sys/syscall.h>
#include <unistd.h>

namespace talvora::test {

inline int flushes = 0;

}  // namespace talvora::test

extern "C" __attribute__((visibility("default"))) int fdatasync(int file) {
    ++talvora::test::flushes;
    return static_cast<int>(::syscall(SYS_fdatasync, file));
}
extern "C" __attribute__((visibility("default"))) int fsync(int file) {
    ++talvora::test::flushes;
    return static_cast<int>(::syscall(SYS_fsync, file));
}

// SPDX-License-Identifier: MIT
// Takes the place of the C library's function in every target. The code under test logs a line for
// each sentence that it cannot use, and where no system log runs, each line costs two system calls
// that fail: more than all the rest of a small input.

#include <cstdarg>

#include <syslog.h>

extern "C" {
void syslog(int /*priority*/, const char* /*format*/, ...) {}
void vsyslog(int /*priority*/, const char* /*format*/, std::va_list /*arguments*/) {}
void __syslog_chk(int /*priority*/, int /*flag*/, const char* /*format*/, ...) {}
}

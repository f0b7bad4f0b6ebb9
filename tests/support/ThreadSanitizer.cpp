// SPDX-License-Identifier: MIT
// What the thread sanitizer is not to report: GLib's locks are system calls that it cannot see, so
// that it takes the mocked device tree's own worker thread for one without any.

extern "C" [[gnu::visibility("default")]] const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions()
{
    return "race:libglib-2.0.so\n"
           "race:libgobject-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libumockdev\n";
}

// SPDX-License-Identifier: MIT
// Suppresses false reports of the thread sanitizer. It cannot see GLib's locks, which are system
// calls, and so reports races with the worker thread of the mocked device tree.

extern "C" [[gnu::visibility("default")]] const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions()
{
    return "race:libglib-2.0.so\n"
           "race:libgobject-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libumockdev\n";
}

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <dlfcn.h>

namespace {

/// Keeps what libgphoto2 loads and unloads, so that a sanitizer can tell whose a leak is. Null
/// where there is no such library.
void* kept(const char* library) { return ::dlopen(library, RTLD_LAZY | RTLD_NODELETE); }

/// Some drivers bring libheif with them, whose decoder libde265 holds a table for good.
[[maybe_unused]] void* const pictures = kept("libheif.so.1");
[[maybe_unused]] void* const driver = kept(CAMERA_DRIVERS "/ptp2.so");

}  // namespace

#if defined(__SANITIZE_ADDRESS__)
/// The driver forgets what it has made for a camera that cannot be opened, and what it knew of a
/// file that has changed.
extern "C" const char* __lsan_default_suppressions() { return "leak:ptp2.so"; }
#endif

#if defined(__SANITIZE_THREAD__)
/// How GLib's own threads agree cannot be seen from outside.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libglib-2.0.so\nrace:libgio-2.0.so";
}
#endif

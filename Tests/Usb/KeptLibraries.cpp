// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <dlfcn.h>

namespace {

/// Some of libgphoto2's drivers bring libheif with them, whose decoder libde265 holds a table
/// for good. Unloaded, as the library does with drivers that it does not need, it would have
/// leaked that table; so it stays. Null where there is none.
[[maybe_unused]] void* const keptLibrary = ::dlopen("libheif.so.1", RTLD_LAZY | RTLD_NODELETE);

}  // namespace

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbCamerasTest.h"

#include <dlfcn.h>
#include <gphoto2/gphoto2.h>

#include <mutex>
#include <set>
#include <thread>

namespace {

/// Threads that have made or destroyed something of libgphoto2's.
struct LibraryThreads {
    std::mutex mutex;
    std::set<std::thread::id> ids;

    void note() {
        const std::lock_guard lock(mutex);
        ids.insert(std::this_thread::get_id());
    }
    std::set<std::thread::id> noted() {
        const std::lock_guard lock(mutex);
        return ids;
    }
};

LibraryThreads& libraryThreads() {
    static LibraryThreads& all = *new LibraryThreads;
    return all;
}

/// The library's own function, in front of which this program's stands.
template <class Function>
Function* inLibrary(const char* name) {
    libraryThreads().note();
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" GPContext* gp_context_new() {
    return inLibrary<decltype(gp_context_new)>("gp_context_new")();
}

extern "C" void gp_context_set_cancel_func(GPContext* context, GPContextCancelFunc func,
                                           void* data) {
    inLibrary<decltype(gp_context_set_cancel_func)>("gp_context_set_cancel_func")(context, func,
                                                                                  data);
}

extern "C" void gp_context_unref(GPContext* context) {
    inLibrary<decltype(gp_context_unref)>("gp_context_unref")(context);
}

extern "C" int gp_port_info_list_free(GPPortInfoList* list) {
    return inLibrary<decltype(gp_port_info_list_free)>("gp_port_info_list_free")(list);
}

extern "C" int gp_camera_init(Camera* camera, GPContext* context) {
    return inLibrary<decltype(gp_camera_init)>("gp_camera_init")(camera, context);
}

namespace bildkurier {
namespace {

TEST_F(UsbCamerasTest, CallsTheLibraryOnTheCamerasOwnThreadOnly) {
    usb.plugIn("1-1", device);
    start();
    auto found = files();
    usb.pull("1-1");
    runUntil([this] { return !sink->removed.empty(); });
    cameras.reset();
    found.clear();
    camera.reset();
    sink->added.clear();
    sink->removed.clear();
    EXPECT_FALSE(libraryThreads().noted().empty());
    EXPECT_FALSE(libraryThreads().noted().contains(std::this_thread::get_id()));
}

}  // namespace
}  // namespace bildkurier

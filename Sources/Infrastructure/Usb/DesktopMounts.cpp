// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DesktopMounts.h"

#include "Destroy.h"

#include <gio/gio.h>

#include <atomic>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

template <class T>
using Object = std::unique_ptr<T, Destroy<g_object_unref>>;

/// Of one thread, on which answers arrive.
class AnswerQueue {
public:
    AnswerQueue() { g_main_context_push_thread_default(context_.get()); }
    AnswerQueue(const AnswerQueue&) = delete;
    AnswerQueue& operator=(const AnswerQueue&) = delete;
    ~AnswerQueue() { g_main_context_pop_thread_default(context_.get()); }

    void waitFor(const bool& answered) {
        while (!answered) g_main_context_iteration(context_.get(), TRUE);
    }

private:
    std::unique_ptr<GMainContext, Destroy<g_main_context_unref>> context_{g_main_context_new()};
};

/// What is asked of the desktop, by a thread that hangs where the desktop does.
struct DesktopRequest {
    std::vector<std::string> addresses;
    Object<GCancellable> cancellable{g_cancellable_new()};
    std::atomic<bool> isDone = false;

    void unmount(const std::string& address) const {
        AnswerQueue answers;
        const Object<GFile> file(g_file_new_for_uri(address.c_str()));
        const Object<GMount> mount(
            g_file_find_enclosing_mount(file.get(), cancellable.get(), nullptr));
        if (!mount) return;
        bool answered = false;
        const auto finish = [](GObject* source, GAsyncResult* result, gpointer flag) {
            g_mount_unmount_with_operation_finish(G_MOUNT(source), result, nullptr);
            *static_cast<bool*>(flag) = true;
        };
        g_mount_unmount_with_operation(mount.get(), G_MOUNT_UNMOUNT_NONE, nullptr,
                                       cancellable.get(), finish, &answered);
        answers.waitFor(answered);
    }

    void run() {
        for (const std::string& address : addresses) {
            if (g_cancellable_is_cancelled(cancellable.get()) == 0) unmount(address);
        }
        isDone = true;
    }
};

std::vector<std::string> addressesOf(const UsbPlace& place) {
    std::vector<std::string> addresses{"gphoto2://[" + place.port + "]/"};
    if (place.mountName.empty()) return addresses;
    for (const char* scheme : {"gphoto2://", "mtp://"})
        addresses.push_back(scheme + place.mountName + "/");
    return addresses;
}

}  // namespace

void releaseFromDesktop(const UsbPlace& place, const UsbSession& session,
                        std::chrono::milliseconds time) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds step(10);
    const auto deadline = Clock::now() + time;
    const std::shared_ptr<DesktopRequest> request(
        new DesktopRequest{.addresses = addressesOf(place)});
    try {
        std::thread([request] { request->run(); }).detach();
    } catch (const std::system_error&) {
        // Without a thread, the camera stays with whoever holds it.
        return;
    }
    while (!request->isDone && !session.endsWithin(step) && Clock::now() < deadline) {
    }
    g_cancellable_cancel(request->cancellable.get());
}

}  // namespace bildkurier

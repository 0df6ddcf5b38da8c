// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DesktopMounts.h"

#include "Destroy.h"

#include <gio/gio.h>

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

namespace {

template <class T>
using Object = std::unique_ptr<T, Destroy<g_object_unref>>;

/// Where this thread's answers arrive.
class AnswerQueue {
public:
    AnswerQueue() { g_main_context_push_thread_default(context_.get()); }
    AnswerQueue(const AnswerQueue&) = delete;
    AnswerQueue& operator=(const AnswerQueue&) = delete;
    ~AnswerQueue() { g_main_context_pop_thread_default(context_.get()); }

    /// Waits for `answered`; cancels what it is the answer to when that takes too long.
    void waitFor(const bool& answered, GCancellable* work, std::chrono::milliseconds time) {
        const std::unique_ptr<GSource, Destroy<g_source_unref>> deadline(
            g_timeout_source_new(static_cast<guint>(time.count())));
        const auto cancel = [](gpointer tooLong) -> gboolean {
            g_cancellable_cancel(static_cast<GCancellable*>(tooLong));
            return G_SOURCE_REMOVE;
        };
        g_source_set_callback(deadline.get(), cancel, work, nullptr);
        g_source_attach(deadline.get(), context_.get());
        while (!answered) g_main_context_iteration(context_.get(), TRUE);
        g_source_destroy(deadline.get());
    }

private:
    std::unique_ptr<GMainContext, Destroy<g_main_context_unref>> context_{g_main_context_new()};
};

void unmount(const std::string& address, std::chrono::milliseconds time) {
    AnswerQueue answers;
    const Object<GFile> file(g_file_new_for_uri(address.c_str()));
    const Object<GMount> mount(g_file_find_enclosing_mount(file.get(), nullptr, nullptr));
    if (!mount) return;
    const Object<GCancellable> cancellable(g_cancellable_new());
    bool answered = false;
    const auto finish = [](GObject* source, GAsyncResult* result, gpointer flag) {
        g_mount_unmount_with_operation_finish(G_MOUNT(source), result, nullptr);
        *static_cast<bool*>(flag) = true;
    };
    g_mount_unmount_with_operation(mount.get(), G_MOUNT_UNMOUNT_NONE, nullptr, cancellable.get(),
                                   finish, &answered);
    answers.waitFor(answered, cancellable.get(), time);
}

}  // namespace

void releaseFromDesktop(const UsbPlace& place, std::chrono::milliseconds time) {
    unmount("gphoto2://[" + place.port + "]/", time);
    if (place.mountName.empty()) return;
    for (const char* scheme : {"gphoto2://", "mtp://"})
        unmount(scheme + place.mountName + "/", time);
}

}  // namespace bildkurier

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UdevTestbed.h"

#include <stdexcept>

namespace bildkurier {

namespace {

void need(gboolean done, GError* error, const char* what) {
    if (!done) throw std::runtime_error(std::string(what) + ": " + (error ? error->message : ""));
}

}  // namespace

UdevTestbed::UdevTestbed() : testbed_(umockdev_testbed_new()) {}

UdevTestbed::~UdevTestbed() { g_object_unref(testbed_); }

bool UdevTestbed::isInPlace() const { return umockdev_in_mock_environment() != 0; }

void UdevTestbed::plugIn(const std::string& description, const std::string& path) {
    path_ = path;
    GError* error = nullptr;
    need(umockdev_testbed_add_from_string(testbed_, description.c_str(), &error), error, "add");
}

void UdevTestbed::answer(const std::string& node, const std::string& recording) {
    GError* error = nullptr;
    need(umockdev_testbed_load_ioctl(testbed_, node.c_str(), recording.c_str(), &error), error,
         "ioctl");
}

void UdevTestbed::pull() {
    umockdev_testbed_uevent(testbed_, path_.c_str(), "remove");
    umockdev_testbed_remove_device(testbed_, path_.c_str());
}

}  // namespace bildkurier

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <utility>

namespace bildkurier {

/// Owns a file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileDescriptor();

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

    /// Closes it now and answers what close(2) did: 0 or an errno value.
    int close();

private:
    int descriptor_ = -1;
};

}  // namespace bildkurier

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

namespace {

/// Takes what the adapters leave to a pool. It is never drained: without reference counting they
/// hold objects that nothing else keeps.
class AutoreleasePool final : public testing::Environment {
public:
    void SetUp() override { [NSAutoreleasePool new]; }
};

[[maybe_unused]] const auto* const pool = testing::AddGlobalTestEnvironment(new AutoreleasePool);

}  // namespace

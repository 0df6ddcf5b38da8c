// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraFault.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(CameraFault, IsWhatTheLibrarysAnswerMeans) {
    const struct {
        int code;
        CameraFault fault;
    } cases[] = {
        {0, CameraFault::None},           {17, CameraFault::None},
        {-112, CameraFault::Cancelled},   {-52, CameraFault::Gone},
        {-1, CameraFault::Transfer},      {-7, CameraFault::Transfer},
        {-10, CameraFault::Transfer},     {-34, CameraFault::Transfer},
        {-102, CameraFault::Transfer},    {-107, CameraFault::Transfer},
        {-53, CameraFault::Busy},         {-60, CameraFault::Busy},
        {-110, CameraFault::Busy},        {-6, CameraFault::NotOffered},
        {-105, CameraFault::Unsupported}, {-5, CameraFault::Unsupported},
        {-2, CameraFault::Other},         {-108, CameraFault::Missing},
        {-35, CameraFault::Transfer},     {-51, CameraFault::Transfer},
    };
    for (const auto& [code, fault] : cases) EXPECT_EQ(cameraFault(code), fault) << code;
}

}  // namespace
}  // namespace bildkurier

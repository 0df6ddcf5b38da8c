// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DownloadFence.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <latch>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

TEST(DownloadFence, LetsOneAtATimeIntoAFolderWhicheverPathLeadsThere) {
    const TemporaryFolder around;
    const std::string staging = around.makeFolder("staging");
    fs::create_directory_symlink(staging, around.path("link"));
    std::atomic<int> inside = 0;
    std::atomic<bool> together = false;
    std::latch start(3);
    std::vector<std::jthread> threads;
    for (const auto& folder : {staging, around.path("./staging"), around.path("link")}) {
        threads.emplace_back([&, folder] {
            start.arrive_and_wait();
            for (int i = 0; i < 300; ++i) {
                withDownloadFence(folder, [&] {
                    if (++inside > 1) together = true;
                    std::this_thread::yield();
                    --inside;
                });
            }
        });
    }
    threads.clear();
    EXPECT_FALSE(together);
}

TEST(DownloadFence, KeepsAFolderThatIsMadeAnewForTheOneThatWaits) {
    const TemporaryFolder around;
    const std::string staging = around.makeFolder("staging");
    std::latch begun(1);
    std::vector<int> order;
    std::jthread next;
    withDownloadFence(staging, [&] {
        fs::remove(staging);
        fs::create_directory(staging);
        next = std::jthread([&] {
            begun.count_down();
            withDownloadFence(staging, [&] { order.push_back(2); });
        });
        begun.wait();
        order.push_back(1);
    });
    next.join();
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST(DownloadFence, KeepsNobodyFromAnotherFolder) {
    const TemporaryFolder around;
    const std::string other = around.makeFolder("b");
    bool wasThere = false;
    withDownloadFence(around.makeFolder("a"), [&] {
        std::jthread([&] {
            withDownloadFence(other, [&] { wasThere = true; });
            withDownloadFence(around.path("fehlt"), [] {});
        }).join();
    });
    EXPECT_TRUE(wasThere);
}

}  // namespace
}  // namespace bildkurier

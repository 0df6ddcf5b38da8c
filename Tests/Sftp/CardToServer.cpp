// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardToServer.h"

#include "ImportPlanner.h"
#include "PictureOnCard.h"

#include <gtest/gtest.h>

#include <utility>

namespace bildkurier {

CardToServer::CardToServer(Tree card, std::shared_ptr<SFTPFileStore> server, Url destination)
    : card_(std::move(card)),
      destination_(std::move(destination)),
      store_(std::make_shared<FileStoreRouter>(std::make_shared<LocalFileStore>(),
                                               std::move(server))) {}

ImportRunner::Progress CardToServer::import(FolderLayout layout) {
    std::vector<std::shared_ptr<CameraFile>> files;
    std::vector<ImportCandidate> candidates;
    for (const auto& [name, contents] : card_) {
        files.push_back(std::make_shared<PictureOnCard>(name, contents));
        candidates.push_back({name, std::ssize(contents), {}});
    }
    std::vector<std::shared_ptr<CameraFile>> missing;
    for (const auto index :
         missingIndices(candidates, store_->existingFileKeys(destination_), std::nullopt))
        missing.push_back(files[index]);

    ManualRunLoop loop;
    ImportRunner runner(store_, loop, loop);
    log.clear();
    runner.onLog = [this](const std::string& line) { log.push_back(line); };
    const auto started = runner.start(missing, destination_, layout);
    EXPECT_TRUE(started) << started.error().message;
    loop.settle();
    EXPECT_FALSE(runner.isRunning());
    return runner.progress();
}

}  // namespace bildkurier

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStoreRouter.h"
#include "ImportRunner.h"
#include "LocalFileStore.h"
#include "ManualRunLoop.h"
#include "SFTPFileStore.h"
#include "Tree.h"

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

/// Imports a card with these files, by name, into a folder of a server; as often as asked,
/// each time what is missing there.
class CardToServer {
public:
    CardToServer(Tree card, std::shared_ptr<SFTPFileStore> server, Url destination);

    /// Answers how it ended; its log is in `log`.
    ImportRunner::Progress import(FolderLayout layout = {});

    std::vector<std::string> log;

private:
    Tree card_;
    Url destination_;
    std::shared_ptr<FileStoreRouter> store_;
};

}  // namespace bildkurier

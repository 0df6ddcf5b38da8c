// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ConnectionlessRunner.h"
#include "FileName.h"
#include "SFTPFileStore.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>

namespace bildkurier {
namespace {

/// Has the client carry out `script` on this computer, without a connection.
CommandResult runClient(const std::string& script) {
    return ConnectionlessRunner().run("/usr/bin/sftp", {}, script);
}

/// Names of what means something to the client, to shells or to nobody.
rc::Gen<std::string> fileNames() {
    const auto special = rc::gen::elementOf(std::string("\\\\\\\"\"*?[]{},~!#-'$ .ab1"));
    const auto any = rc::gen::inRange(0x20, 0x100);
    const auto byte = rc::gen::weightedOneOf<char>(
        {{5, special}, {1, rc::gen::map(any, [](int code) { return static_cast<char>(code); })}});
    return rc::gen::suchThat(rc::gen::resize(12, rc::gen::container<std::string>(byte)),
                             isPlainFileName);
}

TEST(SFTPQuoted, GivesTheClientExactlyTheNameThatWentIn) {
    if (!ConnectionlessRunner::isInstalled())
        GTEST_SKIP() << "sftp-server fehlt (Paket openssh-sftp-server)";
    EXPECT_TRUE(rc::check([] {
        const auto name = *fileNames();
        const TemporaryFolder folder;
        const auto file = folder.write("from/" + name, "picture");
        const auto target = folder.makeFolder("to") + "/" + name;
        const auto part = folder.path("part");
        const auto q = SFTPFileStore::quoted;
        const auto uploaded =
            runClient("put " + q(file) + " " + q(part) + "\nrename " + q(part) + " " + q(target) +
                      "\nls -ln " + SFTPFileStore::quotedForListing(target) + "\n");
        RC_ASSERT(uploaded.status == 0);
        RC_ASSERT(tree(folder.path("to")) == (Tree{{name, "picture"}}));
        const auto removed =
            runClient("rm " + q(target) + "\nmkdir " + q(target) + "\ncd " + q(target) + "\ndf " +
                      q(target) + "\nls -ln " + SFTPFileStore::quotedForListing(target) + "\n");
        RC_ASSERT(removed.status == 0);
        RC_ASSERT(tree(folder.path("to")) == (Tree{{name + "/", ""}}));
        RC_ASSERT(runClient("rmdir " + q(target) + "\n").status == 0);
        RC_ASSERT(tree(folder.path("to")) == Tree{});
    }));
}

}  // namespace
}  // namespace bildkurier

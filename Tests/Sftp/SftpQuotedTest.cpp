// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ConnectionlessRunner.h"
#include "FileName.h"
#include "SftpServerTest.h"

#include <rapidcheck.h>

#include <random>
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

TEST_F(SftpServerTest, HasExactlyTheNamesThatTheClientWasGiven) {
    const std::uint64_t seed = std::random_device()();
    SCOPED_TRACE(seed);
    constexpr std::size_t count = 200;
    const auto names =
        rc::gen::container<std::vector<std::string>>(count, fileNames())(rc::Random(seed), 100)
            .value();
    const auto picture = local.write("picture", "picture");
    std::string script;
    Tree expected;
    for (const auto& name : names) {
        script += "put " + SFTPFileStore::quoted(picture) + " " +
                  SFTPFileStore::quoted(server->path(name)) + "\n";
        expected[name] = "picture";
    }
    const auto result = tellClient(script);
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_EQ(serversTree(), expected);
    const auto keys = store->existingFileKeys(server->root());
    for (const auto& name : names) {
        if (name.starts_with('.')) continue;
        EXPECT_TRUE(keys.contains(fileKey(name, 7))) << name;
    }
}

}  // namespace
}  // namespace bildkurier

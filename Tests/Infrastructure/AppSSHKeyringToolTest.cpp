// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppSSHKeyring.h"
#include "FileSizeLimit.h"
#include "KeyringAnswers.h"
#include "PermissionWatch.h"
#include "ProcessCommandRunner.h"
#include "ProgramCall.h"
#include "ScriptedCommandRunner.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

constexpr auto tool = "/usr/bin/ssh-keygen";
/// A keyring over the real program.
class AppSSHKeyringToolTest : public testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(tool)) GTEST_SKIP() << "There is no ssh-keygen.";
        runner->answer = [this](const ScriptedCommandRunner::Call& call) {
            auto result = ProcessCommandRunner().run(call.program, call.arguments, call.input);
            if (afterRun) afterRun();
            return result;
        };
    }

    /// A key of the user's, as the path of its file. `options` go to the tool.
    std::string userKey(const Names& options, const std::string& passphrase = "") const {
        static int number = 0;
        const std::string path = folder.path("key" + std::to_string(++number));
        Names command{tool, "-q", "-N", passphrase, "-C", "anna@nas", "-f", path};
        command.insert(command.end(), options.begin(), options.end());
        EXPECT_TRUE(succeeds(command));
        return path;
    }

    std::string contents(const std::string& name) const { return tree(folder.path()).at(name); }
    std::string contentsOf(const std::string& path) const {
        return contents(fs::path(path).filename().string());
    }

    /// Adds a server's key to the known ones.
    void know(const std::string& line) {
        const std::string known =
            fs::exists(keyring.knownHosts()) ? contents("ssh/known_hosts") : "";
        folder.write("ssh/known_hosts", known + line + "\n");
    }

    /// Kind and digits of a public key, without its comment.
    std::string bareKey(const std::string& path) const {
        const std::string line = contentsOf(path + ".pub");
        return line.substr(0, line.rfind(' '));
    }

    const TemporaryFolder folder;
    const std::string directory = folder.path("ssh");
    std::function<void()> afterRun;
    std::shared_ptr<ScriptedCommandRunner> runner = std::make_shared<ScriptedCommandRunner>();
    AppSSHKeyring keyring{directory, runner};
};

TEST_F(AppSSHKeyringToolTest, GeneratesANewPairEachTime) {
    EXPECT_EQ(message(keyring.generate()), "");
    const auto first = keyring.publicKey().value_or("");
    EXPECT_TRUE(first.starts_with("ssh-ed25519 AAAA")) << first;
    EXPECT_TRUE(first.ends_with(" bildkurier")) << first;
    const auto fingerprint = keyring.keyFingerprint().value_or("");
    EXPECT_TRUE(fingerprint.starts_with("SHA256:")) << fingerprint;
    EXPECT_TRUE(fingerprint.ends_with(" (ED25519)")) << fingerprint;
    EXPECT_EQ(message(keyring.generate()), "");
    EXPECT_TRUE(keyring.hasKey());
    EXPECT_NE(keyring.publicKey(), first);
    EXPECT_NE(keyring.keyFingerprint(), fingerprint);
}

TEST_F(AppSSHKeyringToolTest, TakesOverKeysOfEveryKind) {
    const struct {
        Names options;
        std::string kind;
        bool hasComment;
    } cases[] = {
        {{"-t", "ed25519"}, " (ED25519)", true},
        {{"-t", "rsa"}, " (RSA)", true},
        {{"-t", "rsa", "-m", "PEM"}, " (RSA)", false},
        {{"-t", "ecdsa"}, " (ECDSA)", true},
        {{"-t", "ecdsa", "-b", "521", "-m", "PKCS8"}, " (ECDSA)", false},
    };
    for (const auto& [options, kind, hasComment] : cases) {
        const std::string source = userKey(options);
        EXPECT_EQ(message(keyring.importKey(Url::file(source))), "") << kind;
        EXPECT_EQ(keyring.publicKey(), bareKey(source) + (hasComment ? " anna@nas" : ""));
        EXPECT_TRUE(keyring.keyFingerprint().value_or("").ends_with(kind)) << kind;
        EXPECT_EQ(contents("ssh/schluessel"), contentsOf(source));
        EXPECT_FALSE(fs::exists(directory + "/schluessel.neu"));
    }
}

TEST_F(AppSSHKeyringToolTest, TakesOverOneLineOfAKeyWhoseCommentHasSeveral) {
    const std::string source = userKey({"-t", "ed25519", "-C", "anna\nssh-ed25519 AAAA fremd"});
    EXPECT_EQ(message(keyring.importKey(Url::file(source))), "");
    const auto key = keyring.publicKey().value_or("");
    EXPECT_TRUE(key.ends_with(" anna")) << key;
    EXPECT_EQ(key.find('\n'), std::string::npos);
}

TEST_F(AppSSHKeyringToolTest, KeepsTheOldPairWhenTheNewKeyIsNoGood) {
    ASSERT_EQ(message(keyring.generate()), "");
    const Tree before = tree(directory);
    const auto fingerprint = keyring.keyFingerprint();
    const std::string key = userKey({"-t", "ed25519"});
    std::string beyond = contentsOf(key);
    beyond.resize(65536, '#');
    const struct {
        std::string file;
        std::string sentence;
    } cases[] = {
        {userKey({"-t", "ed25519"}, "geheim"), hasPassphrase},
        {userKey({"-t", "rsa", "-m", "PEM"}, "geheim"), hasPassphrase},
        {userKey({"-t", "ecdsa", "-m", "PKCS8"}, "geheim"), hasPassphrase},
        {key + ".pub", noPrivateKey},
        {folder.write("leer", ""), noPrivateKey},
        {folder.write("groß", beyond), noPrivateKey},
        {folder.write("unfug", "PRIVATE KEY-----\n"), notAccepted},
        {folder.write("halb", contentsOf(key).substr(0, 200)), notAccepted},
        {folder.write("umbrochen", "x" + contentsOf(key)), notAccepted},
        {folder.path("fehlt"),
         "Datei lässt sich nicht lesen: Die Datei oder der Ordner ist nicht vorhanden"},
    };
    for (const auto& [file, sentence] : cases) {
        EXPECT_EQ(message(keyring.importKey(Url::file(file))), sentence) << file;
        EXPECT_EQ(tree(directory), before) << file;
        EXPECT_EQ(keyring.keyFingerprint(), fingerprint);
    }
}

TEST_F(AppSSHKeyringToolTest, TakesOverAKeyInAFileThatIsJustSmallEnough) {
    const std::string key = userKey({"-t", "ed25519"});
    std::string padded = contentsOf(key);
    padded.resize(65535, '#');
    EXPECT_EQ(message(keyring.importKey(Url::file(folder.write("groß", padded)))), "");
    EXPECT_EQ(keyring.publicKey(), bareKey(key) + " anna@nas");
    EXPECT_EQ(contents("ssh/schluessel"), padded);
}

TEST_F(AppSSHKeyringToolTest, LeavesNoPairWhenTheToolCannotWriteOne) {
    folder.makeFolder("ssh/schluessel/voll");
    const std::string sentence = message(keyring.generate());
    EXPECT_TRUE(sentence.starts_with("Schlüssel lässt sich nicht erzeugen: ")) << sentence;
    EXPECT_NE(sentence.find(directory), std::string::npos) << sentence;
    EXPECT_FALSE(keyring.hasKey());
}

TEST_F(AppSSHKeyringToolTest, LeavesNothingOfAKeyForWhichThereIsNoRoom) {
    const std::string source = userKey({"-t", "rsa"});
    fs::create_directory(directory);
    const FileSizeLimit limit(100);
    EXPECT_EQ(message(keyring.importKey(Url::file(source))),
              "Schlüssel lässt sich nicht speichern.");
    EXPECT_TRUE(fs::is_empty(directory));
    const std::string sentence = message(keyring.generate());
    EXPECT_TRUE(sentence.starts_with("Schlüssel lässt sich nicht erzeugen: ")) << sentence;
    EXPECT_TRUE(fs::is_empty(directory));
}

TEST_F(AppSSHKeyringToolTest, ReportsAFolderThatCannotBeMade) {
    const std::string source = userKey({"-t", "ed25519"});
    folder.write("ssh", "eine Datei");
    const std::string sentence =
        "Datenordner lässt sich nicht anlegen: Eine Datei oder ein Ordner dieses Namens existiert "
        "schon";
    EXPECT_EQ(message(keyring.generate()), sentence);
    EXPECT_EQ(message(keyring.importKey(Url::file(source))), sentence);
}

TEST_F(AppSSHKeyringToolTest, LeavesNoPairWhenTheNewOneCannotTakeItsPlace) {
    const std::string source = userKey({"-t", "ed25519"});
    for (const std::string obstacle : {"schluessel", "schluessel.pub", "schluessel.pub.neu"}) {
        SCOPED_TRACE(obstacle);
        fs::remove_all(directory);
        ASSERT_EQ(message(keyring.generate()), "");
        fs::remove(directory + "/" + obstacle);
        folder.makeFolder("ssh/" + obstacle + "/voll");
        EXPECT_TRUE(message(keyring.importKey(Url::file(source)))
                        .starts_with("Schlüssel lässt sich nicht speichern: "));
        EXPECT_FALSE(keyring.hasKey());
        EXPECT_EQ(std::distance(fs::directory_iterator(directory), fs::directory_iterator()), 1);
    }
}

TEST_F(AppSSHKeyringToolTest, ReportsThatThereIsNoTool) {
    const std::string source = userKey({"-t", "ed25519"});
    AppSSHKeyring without(directory, runner, folder.path("fehlt"));
    const std::string sentence = message(without.generate());
    EXPECT_TRUE(sentence.starts_with("Schlüssel lässt sich nicht erzeugen: " +
                                     folder.path("fehlt") + " lässt sich nicht starten: "))
        << sentence;
    EXPECT_EQ(message(without.importKey(Url::file(source))), notAccepted);
    EXPECT_TRUE(fs::is_empty(directory));
    ASSERT_EQ(message(keyring.generate()), "");
    EXPECT_TRUE(without.publicKey());
    EXPECT_EQ(without.keyFingerprint(), std::nullopt);
}

TEST_F(AppSSHKeyringToolTest, NeverLetsAnybodyElseReadAGeneratedKey) {
    const std::string made = folder.path("ssh");
    const PermissionWatch above(folder.path());
    bool ran = false;
    afterRun = [&] {
        ran = true;
        EXPECT_EQ(permissions(made), 0700);
        EXPECT_EQ(permissions(keyring.keyFile()), 0600);
    };
    EXPECT_EQ(message(keyring.generate()), "");
    EXPECT_TRUE(ran);
    EXPECT_EQ(above.seen(), (Names{"ssh"}));

    const PermissionWatch inside(directory);
    afterRun = [&] {
        EXPECT_EQ(permissions(keyring.keyFile()), 0600);
        EXPECT_EQ(inside.seen(), (Names{"schluessel", "schluessel.pub"}));
    };
    EXPECT_EQ(message(keyring.generate()), "");
    EXPECT_EQ(inside.seen(), (Names{"schluessel!"}));
    EXPECT_EQ(permissions(keyring.keyFile()), 0600);
    EXPECT_EQ(permissions(directory), 0700);
}

TEST_F(AppSSHKeyringToolTest, NeverLetsAnybodyElseReadAKeyThatIsTakenOver) {
    const std::string source = userKey({"-t", "ed25519"});
    {
        const PermissionWatch above(folder.path());
        afterRun = [&] { EXPECT_EQ(permissions(directory), 0700); };
        EXPECT_EQ(message(keyring.importKey(Url::file(source))), "");
        EXPECT_EQ(above.seen(), (Names{"ssh"}));
    }
    const PermissionWatch inside(directory);
    bool ran = false;
    afterRun = [&] {
        ran = true;
        EXPECT_EQ(permissions(directory + "/schluessel.neu"), 0600);
        EXPECT_EQ(inside.seen(), (Names{"schluessel.neu"}));
    };
    EXPECT_EQ(message(keyring.importKey(Url::file(source))), "");
    EXPECT_TRUE(ran);
    EXPECT_EQ(inside.seen(), (Names{"schluessel", "schluessel.pub.neu", "schluessel.pub"}));
    EXPECT_EQ(permissions(keyring.keyFile()), 0600);
    EXPECT_EQ(permissions(directory), 0700);
}

TEST_F(AppSSHKeyringToolTest, KnowsTheFingerprintsOfServers) {
    const std::string first = userKey({"-t", "ed25519"});
    const std::string second = userKey({"-t", "ecdsa"});
    fs::create_directory(directory);
    know("nas " + bareKey(first));
    know("[nas]:2222 " + bareKey(second));
    const auto fingerprintOf = [&](const std::string& key) {
        return AppSSHKeyring::fingerprint(
            ProcessCommandRunner().run(tool, {"-l", "-f", key + ".pub"}, std::nullopt).output);
    };
    ASSERT_TRUE(fingerprintOf(first));
    EXPECT_EQ(keyring.hostFingerprint("nas", std::nullopt), fingerprintOf(first));
    EXPECT_EQ(keyring.hostFingerprint("NAS", 22), fingerprintOf(first));
    EXPECT_EQ(keyring.hostFingerprint("nas", 2222), fingerprintOf(second));
    EXPECT_EQ(keyring.hostFingerprint("nas", 2223), std::nullopt);
    EXPECT_EQ(keyring.hostFingerprint("", std::nullopt), std::nullopt);
    EXPECT_EQ(keyring.hostFingerprint("-R", std::nullopt), std::nullopt);
    EXPECT_EQ(keyring.hostFingerprint("*", std::nullopt), std::nullopt);
}

TEST_F(AppSSHKeyringToolTest, ForgetsOneServerOnly) {
    const std::string key = userKey({"-t", "ed25519"});
    fs::create_directory(directory);
    know("nas " + bareKey(key));
    know("[nas]:2222 " + bareKey(key));
    const Tree before = tree(directory);
    for (const std::string unknown : {"fremd", "", "*", "-F"})
        keyring.forgetHost(unknown, std::nullopt);
    EXPECT_EQ(tree(directory), before);
    keyring.forgetHost("nas", 2222);
    EXPECT_EQ(tree(directory), (Tree{{"known_hosts", "nas " + bareKey(key) + "\n"}}));
    keyring.forgetHost("nas", 22);
    EXPECT_EQ(tree(directory), (Tree{{"known_hosts", ""}}));
    EXPECT_EQ(keyring.hostFingerprint("nas", std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace bildkurier

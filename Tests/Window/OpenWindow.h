// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgramCall.h"
#include "ProgramResult.h"
#include "RunningProgram.h"
#include "TemporaryFolder.h"

#include <atspi/atspi.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace bildkurier {

/// The program with its window, as someone works it who has no mouse and does not see: what the
/// accessibility bus tells, and keys. Its home is a temporary folder, its camera a sample card, its
/// destination a folder beside it.
class OpenWindow {
public:
    /// What it is started with for a camera; without, it looks for one itself.
    enum class Camera : std::uint8_t { sampleCard, emptyCard, none };

    struct Start {
        Camera camera = Camera::sampleCard;
        /// Added to the program's environment.
        std::map<std::string, std::string> environment;
        /// More cards, each of one picture, by the names of their folders.
        std::vector<std::string> otherCards;
    };

    OpenWindow() : OpenWindow(Start{}) {}
    explicit OpenWindow(Start start);
    ~OpenWindow();
    OpenWindow(const OpenWindow&) = delete;
    OpenWindow& operator=(const OpenWindow&) = delete;

    /// Whether there is, or soon will be, such a control: "push button", "Importieren".
    bool has(const std::string& role, const std::string& name) const;
    /// Whether the first such control is in that state.
    bool is(const std::string& role, const std::string& name, AtspiStateType state) const;
    /// What is told of the first such control besides its name; empty for none.
    std::string description(const std::string& role, const std::string& name) const;
    /// What stands in the first such text; empty for none.
    std::string text(const std::string& name) const;
    /// Everything that is told, as in "push button: Importieren".
    std::vector<std::string> all() const;
    /// Whether a notification with this text was, or soon will be, heard of.
    bool hears(const std::string& notification) const;
    /// Whether a window of this role has the keys, or soon will have: "dialog".
    bool givesKeysTo(const std::string& role) const;
    /// Presses a key until that control has the focus; false if it never does.
    bool goTo(const std::string& role, const std::string& name,
              const std::string& key = "Tab") const;
    bool goBackTo(const std::string& role, const std::string& name) const {
        return goTo(role, name, "shift+Tab");
    }
    /// Lets the window have the keys, for want of a window manager that would do so.
    static void takeKeys();
    /// As in "Return" and "ctrl+q".
    static void press(const std::string& key);
    static void type(const std::string& text);

    void send(int signal) const { program_->send(signal); }

    /// What a second start does.
    ProgramResult startAgain(std::vector<std::string> arguments = {}) const;
    bool hasEnded() const { return program_->hasEnded(); }
    /// Waits until the program has ended.
    ProgramResult finish() { return program_->finish(); }

    const TemporaryFolder home;
    const std::string card = home.path("karte");
    const std::string destination = home.makeFolder("ziel");

private:
    ProgramCall call() const;
    void prepare() const;
    /// Whether such a control of this very window can be seen; there may be others.
    bool hasOwn(const std::string& role, const std::string& name) const;

    /// Notes what appears on the desktop.
    static void note(AtspiEvent* event, void* heard);

    Start start_;
    std::shared_ptr<AtspiEventListener> listener_;
    std::set<std::string> heard_;
    std::optional<RunningProgram> program_;
};

}  // namespace bildkurier

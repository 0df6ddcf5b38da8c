// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OpenWindow.h"

#include "Soon.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <regex>
#include <stdexcept>
#include <utility>

namespace bildkurier {

namespace {

using Element = std::shared_ptr<AtspiAccessible>;

Element own(AtspiAccessible* element) {
    return {element, [](AtspiAccessible* last) {
                if (last != nullptr) g_object_unref(last);
            }};
}

std::string own(gchar* text) {
    const std::unique_ptr<gchar, decltype(&g_free)> owned(text, g_free);
    return owned ? owned.get() : "";
}

std::string line(const Element& element) {
    return own(atspi_accessible_get_role_name(element.get(), nullptr)) + ": " +
           own(atspi_accessible_get_name(element.get(), nullptr));
}

bool hasState(const Element& element, AtspiStateType state) {
    AtspiStateSet* states = atspi_accessible_get_state_set(element.get());
    const bool has = states != nullptr && atspi_state_set_contains(states, state);
    if (states != nullptr) g_object_unref(states);
    return has;
}

void walk(const Element& element, const std::function<void(const Element&)>& visit) {
    if (!element) return;
    visit(element);
    const int count = atspi_accessible_get_child_count(element.get(), nullptr);
    for (int child = 0; child < count; ++child)
        walk(own(atspi_accessible_get_child_at_index(element.get(), child, nullptr)), visit);
}

/// Every element of all applications, told afresh.
void walkDesktop(const std::function<void(const Element&)>& visit) {
    const Element desktop = own(atspi_get_desktop(0));
    atspi_accessible_clear_cache(desktop.get());
    walk(desktop, visit);
}

/// The first of that role and name that can be seen; null without one.
Element find(const std::string& role, const std::string& name) {
    const std::string wanted = role + ": " + name;
    Element found;
    walkDesktop([&](const Element& element) {
        if (!found && hasState(element, ATSPI_STATE_SHOWING) && line(element) == wanted)
            found = element;
    });
    return found;
}

/// What has the focus; empty while it moves.
std::string focused() {
    std::string found;
    walkDesktop([&](const Element& element) {
        if (hasState(element, ATSPI_STATE_FOCUSED)) found = line(element);
    });
    return found;
}

void xdotool(std::vector<std::string> arguments) {
    const ProgramCall call{.path = "/usr/bin/xdotool", .arguments = std::move(arguments)};
    if (call.run().exitStatus != 0) throw std::runtime_error("xdotool failed");
}

}  // namespace

OpenWindow::OpenWindow(Start start)
    : start_(std::move(start)),
      listener_(atspi_event_listener_new(note, &heard_, nullptr), g_object_unref) {
    atspi_event_listener_register(listener_.get(), "object:state-changed:showing", nullptr);
    prepare();
    program_.emplace(call());
    if (!soon([this] { return hasOwn("push button", "Kamera und Zielordner neu einlesen"); }))
        throw std::runtime_error("the window does not open");
    takeKeys();
}

OpenWindow::~OpenWindow() {
    atspi_event_listener_deregister(listener_.get(), "object:state-changed:showing", nullptr);
}

void OpenWindow::note(AtspiEvent* event, void* heard) {
    const Element element = own(ATSPI_ACCESSIBLE(g_object_ref(event->source)));
    if (event->detail1 != 0) static_cast<std::set<std::string>*>(heard)->insert(line(element));
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

bool OpenWindow::hears(const std::string& notification) const {
    return soon([&] { return heard_.contains("notification: " + notification); });
}

ProgramCall OpenWindow::call() const {
    ProgramCall call{.path = BILDKURIER,
                     .arguments = {},
                     .environment = {{"HOME", home.path()},
                                     {"XDG_CONFIG_HOME", home.path("config")},
                                     {"XDG_DATA_HOME", home.path("data")},
                                     {"XDG_CACHE_HOME", home.path("cache")},
                                     {"XDG_RUNTIME_DIR", home.path("run")},
                                     {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                                     {"QT_QPA_PLATFORM", "xcb"},
                                     {"LC_ALL", "C.UTF-8"}},
                     .deadline = std::chrono::seconds(100)};
    if (start_.camera != Camera::none) call.arguments = {"--card", card};
    for (const auto& other : start_.otherCards)
        call.arguments.insert(call.arguments.end(), {"--card", home.path(other)});
    call.environment.insert(start_.environment.begin(), start_.environment.end());
    return call;
}

ProgramResult OpenWindow::startAgain(std::vector<std::string> arguments) const {
    ProgramCall again = call();
    again.arguments = std::move(arguments);
    return again.run();
}

void OpenWindow::prepare() const {
    std::filesystem::permissions(home.makeFolder("run"), std::filesystem::perms::owner_all);
    for (const auto& other : start_.otherCards) home.write(other + "/DCIM/100BILDK/BILD.JPG", "x");
    ProgramCall settings = call();
    settings.path = BILDKURIER_CLI;
    settings.arguments = {"settings", "dest", destination};
    if (settings.run().exitStatus != 0) throw std::runtime_error("no destination can be set");
    const ProgramCall sample{.path = SAMPLE_CARD, .arguments = {card}};
    switch (start_.camera) {
        case Camera::sampleCard:
            if (sample.run().exitStatus != 0) throw std::runtime_error("no card can be made");
            break;
        case Camera::emptyCard:
            home.makeFolder("karte/DCIM");
            break;
        case Camera::none:
            break;
    }
}

bool OpenWindow::has(const std::string& role, const std::string& name) const {
    const std::string wanted = role + ": " + name;
    return soon([&] { return std::ranges::count(all(), wanted) > 0; });
}

bool OpenWindow::hasOwn(const std::string& role, const std::string& name) const {
    const auto process = static_cast<guint>(program_->process());
    const std::string wanted = role + ": " + name;
    bool found = false;
    walkDesktop([&](const Element& element) {
        if (!found && hasState(element, ATSPI_STATE_SHOWING) && line(element) == wanted)
            found = atspi_accessible_get_process_id(element.get(), nullptr) == process;
    });
    return found;
}

bool OpenWindow::givesKeysTo(const std::string& role) const {
    return soon([&] {
        bool isActive = false;
        walkDesktop([&](const Element& element) {
            if (hasState(element, ATSPI_STATE_ACTIVE) && line(element).starts_with(role + ":"))
                isActive = true;
        });
        return isActive;
    });
}

std::vector<std::string> OpenWindow::all() const {
    std::vector<std::string> told;
    walkDesktop([&](const Element& element) {
        if (hasState(element, ATSPI_STATE_SHOWING)) told.push_back(line(element));
    });
    return told;
}

bool OpenWindow::is(const std::string& role, const std::string& name, AtspiStateType state) const {
    const Element found = find(role, name);
    return found && hasState(found, state);
}

std::string OpenWindow::description(const std::string& role, const std::string& name) const {
    const Element found = find(role, name);
    return found ? own(atspi_accessible_get_description(found.get(), nullptr)) : "";
}

std::string OpenWindow::text(const std::string& name) const {
    const Element found = find("text", name);
    AtspiText* all = found ? atspi_accessible_get_text_iface(found.get()) : nullptr;
    if (all == nullptr) return "";
    const auto length = atspi_text_get_character_count(all, nullptr);
    const std::string lines = own(atspi_text_get_text(all, 0, length, nullptr));
    g_object_unref(all);
    static const std::regex paragraphEnd("\u2029");
    return std::regex_replace(lines, paragraphEnd, "\n");
}

bool OpenWindow::goTo(const std::string& role, const std::string& name,
                      const std::string& key) const {
    const std::string wanted = role + ": " + name;
    // A key may get lost while the window has much to do.
    constexpr int mostLost = 1;
    std::string at = focused();
    for (int presses = 0, lost = 0; presses < 40; ++presses) {
        if (at == wanted) return true;
        press(key);
        const std::string before = std::exchange(at, "");
        const auto hasMoved = [&] {
            at = focused();
            return !at.empty() && at != before;
        };
        if (!soon(hasMoved) && ++lost > mostLost) return false;
    }
    return false;
}

void OpenWindow::takeKeys() {
    xdotool({"search", "--sync", "--onlyvisible", "--name", "^Bildkurier$", "windowfocus"});
    // Until it knows so, it does not hear keys.
    const auto isActive = [] {
        bool active = false;
        walkDesktop([&](const Element& element) {
            if (hasState(element, ATSPI_STATE_ACTIVE)) active = true;
        });
        return active;
    };
    if (!soon(isActive)) throw std::runtime_error("the window does not take the keys");
}

void OpenWindow::press(const std::string& key) { xdotool({"key", key}); }

void OpenWindow::type(const std::string& text) { xdotool({"type", "--", text}); }

}  // namespace bildkurier

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Formatting.h"
#include "ImportModelTest.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// A model to which cameras are plugged in, again and again. Plugged in anew, a camera is
/// another object with other file objects; only its identity stays.
class PluggedCameraTest : public ImportModelTest {
protected:
    using Names = std::vector<std::string>;
    using Log = std::deque<std::string>;

    static constexpr auto goesOn =
        "Kamera getrennt. Der Import geht weiter, sobald sie wieder verbunden ist.";
    static constexpr auto gaveUp =
        "Import gestoppt: Die Kamera trennt sich wiederholt, ohne dass etwas ankommt. "
        "Originalkabel direkt am Mac probieren (ohne Hub) und Akku der Kamera prüfen.";
    static constexpr auto nothingNew = "Nichts Neues im gewählten Zeitraum.";
    static constexpr int all = std::numeric_limits<int>::max();

    /// Makes the model, which finds its destination folder, and notes what it shows.
    void start() {
        ASSERT_TRUE(store->createDirectory(settings->storedDestination));
        make();
        record();
    }

    static std::string contentsOf(const std::string& name) { return "Inhalt von " + name; }

    /// A camera that delivers the first `delivered` of its files at once and holds the others
    /// back.
    std::shared_ptr<FakeCamera> holding(const std::string& id, std::optional<std::string> identity,
                                        const Names& names, int delivered = all) {
        auto made = camera(id, std::move(identity));
        for (std::size_t index = 0; index < names.size(); ++index) {
            const auto added = file(*made, names[index], contentsOf(names[index]));
            added->holdsBack = std::cmp_greater_equal(index, delivered);
        }
        return made;
    }

    /// The same, plugged in, its session opened and its catalogue read.
    std::shared_ptr<FakeCamera> plugIn(const std::string& id, std::optional<std::string> identity,
                                       const Names& names, int delivered = all) {
        auto made = holding(id, std::move(identity), names, delivered);
        connect(made);
        return made;
    }

    void unplug(const std::shared_ptr<FakeCamera>& removed) {
        model->cameraBrowserDidRemove(removed);
        loop.settle();
    }

    void startImport() {
        model->startImport();
        loop.settle();
    }

    static FakeCameraFile& fileOf(const FakeCamera& of, std::size_t index) {
        return static_cast<FakeCameraFile&>(*of.catalogue.at(index));
    }

    Names newNames() const {
        Names names;
        for (const auto& file : model->newFiles()) names.push_back(file->name().value_or(""));
        return names;
    }

    bool isImporting() const { return model->phase() == ImportModel::Phase::importing; }

    /// Whether the model was seen to show `status`.
    bool showed(const std::string& status) const {
        return std::ranges::find(statuses, status) != statuses.end();
    }

    /// Now, as in the log.
    std::string time() const { return logTime().text(loop.date()); }

    static std::string loaded(const std::string& name) {
        return "✓ JPG/" + name + "  (" + formatBytes(std::ssize(contentsOf(name))) + ")";
    }

    std::string disconnected(int done, int total) const {
        return "✗ " + time() + " Kamera getrennt, " + std::to_string(done) + " von " +
               std::to_string(total) + " geladen.";
    }

    std::string continued(int missing) const {
        return "↻ " + time() + " Fortsetzung nach Trennung: noch " + std::to_string(missing) +
               " Dateien.";
    }

    /// The files in the destination, hidden ones left out.
    Tree imported() const {
        Tree found = store->tree(settings->storedDestination);
        std::erase_if(found, [](const auto& entry) {
            return entry.first.starts_with('.') || entry.first.ends_with('/');
        });
        return found;
    }

    static Tree inTypeFolder(const Names& names) {
        Tree tree;
        for (const auto& name : names) tree["JPG/" + name] = contentsOf(name);
        return tree;
    }
};

}  // namespace bildkurier

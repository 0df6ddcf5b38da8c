// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ImportModelTest.h"

#include <chrono>

namespace bildkurier {

/// Two cameras, not attached at first, and the words that a model has for what it does.
class ImportModelWithTwoCameras : public ImportModelTest {
protected:
    using Phase = ImportModel::Phase;
    using Names = std::vector<std::string>;
    using Phases = std::vector<Phase>;
    using Statuses = std::vector<std::string>;

    static constexpr auto searching = "Suche Kamera … (einschalten und per USB verbinden)";
    static constexpr auto readingList = "Lese Dateiliste der Karte(n) …";
    static constexpr auto checkingDest = "Prüfe Zielordner …";
    static constexpr auto nothingNew = "Nichts Neues im gewählten Zeitraum.";
    static constexpr auto noFiles = "Die Kamera meldet keine Dateien.";
    static constexpr auto chooseFolder = "Zielordner wählen: unter Ziel auf „Ändern …“ klicken.";
    static constexpr auto readingAgain = "Lese Kamera neu ein …";
    static constexpr std::chrono::milliseconds reloadDelay{1500};

    static Date noon(std::chrono::year_month_day day) {
        return std::chrono::sys_days(day) + std::chrono::hours(12);
    }

    /// A card with a file of one byte for each of the first five days of May 2024.
    void fillFiveDays() {
        using namespace std::chrono;
        for (int day = 1; day <= 5; ++day) {
            file(*attached, std::to_string(day) + ".JPG", "a", noon(2024y / May / day));
        }
    }

    Names newNames() const {
        Names names;
        for (const auto& file : model->newFiles()) names.push_back(file->name().value_or("–"));
        return names;
    }

    std::shared_ptr<FakeCamera> attached = camera("A");
    std::shared_ptr<FakeCamera> other = camera("B");
};

}  // namespace bildkurier

// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "CardProof.h"
#include "ImportRunner.h"
#include "SpeedMeter.h"
#include "TypeSummary.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace bildkurier {

/// The error when a choice could not be stored.
inline constexpr auto settingNotKept = "Die Einstellung lässt sich nicht speichern.";

/// Tells whoever started the command line what happens. Main thread.
class Report {
public:
    /// What an import would load. Sizes in bytes.
    struct Plan {
        std::string status;            ///< the same in words
        std::int64_t cameraFiles = 0;  ///< files on the camera
        std::int64_t files = 0;        ///< of these, missing at the destination
        std::int64_t bytes = 0;
        std::vector<TypeSummary> types;
    };

    virtual ~Report() = default;

    virtual void cameras(std::span<const std::shared_ptr<Camera>> cameras) = 0;
    /// The plan of a camera: all that the user asked for, or the beginning of an import.
    virtual void plan(const Plan& plan) = 0;
    virtual void importing(const Plan& plan) = 0;
    virtual void log(const std::string& line) = 0;
    /// What the model says about its state, outside an import.
    virtual void status(const std::string& status) = 0;
    virtual void progress(const ImportRunner::Progress& progress) = 0;
    virtual void speed(const SpeedMeter::Reading& speed) = 0;
    /// What an import came to; its closing line is in the log.
    virtual void finished(const ImportRunner::Progress& progress, bool cancelled) = 0;
    /// A proof that compares contents begins.
    virtual void comparing(const CardProof::Outcome& all) = 0;
    /// A file that is not proved to be at the destination.
    virtual void finding(const CardProof::Finding& finding) = 0;
    /// What a proof came to.
    virtual void verified(const CardProof::Outcome& outcome) = 0;
    /// Something that keeps the command from being carried out, or from going on with this one of
    /// several cards.
    virtual void error(const std::string& message) = 0;

    /// A server's key, which this is the fingerprint of, was stored at the first connection.
    void newServer(const std::string& fingerprint) {
        status("Erste Verbindung: Server-Schlüssel " + fingerprint +
               " gespeichert. Mit dem Fingerabdruck auf dem Server vergleichen.");
    }
};

}  // namespace bildkurier

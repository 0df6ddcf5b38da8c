// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ImportModelTest.h"
#include "ModelCommand.h"
#include "RecordingReport.h"

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

using Lines = std::vector<std::string>;

/// A command over a model amid fakes.
class ModelCommandTest : public ImportModelTest {
protected:
    std::shared_ptr<FakeCamera> attach(const std::string& id) {
        return attached(camera(id, "serial:" + id));
    }

    /// The same camera, plugged in again.
    std::shared_ptr<FakeCamera> returned(const FakeCamera& lost) {
        auto again = camera(lost.deviceId + "'", lost.deviceIdentity);
        again->catalogue = lost.catalogue;
        return attached(again);
    }

    std::shared_ptr<FakeCamera> attached(const std::shared_ptr<FakeCamera>& camera) {
        cameras.push_back(camera);
        model->cameraBrowserDidAdd(camera);
        return camera;
    }

    ModelCommand::Done done() {
        return [this](ExitStatus ended) { ends.push_back(ended); };
    }

    /// What was reported since the last call.
    Lines reported() { return std::exchange(report.lines, {}); }

    void expectEnd(ExitStatus status) { EXPECT_EQ(ends, std::vector{status}); }

    RecordingReport report;
    std::vector<std::shared_ptr<FakeCamera>> cameras;
    std::vector<ExitStatus> ends;
};

}  // namespace bildkurier

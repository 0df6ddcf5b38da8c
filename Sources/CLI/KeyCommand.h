// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ExitStatus.h"
#include "Handle.h"
#include "Report.h"
#include "SSHKeyModel.h"

#include <functional>
#include <memory>
#include <string>

namespace bildkurier {

/// `key show`, `generate`, `import` and `remove`: the application's own key. Main thread.
class KeyCommand {
public:
    using Done = std::function<void(ExitStatus)>;

    /// `report` must outlive this; `done` is called once, maybe by `begin`.
    KeyCommand(CommandLine commandLine, std::shared_ptr<SSHKeyModel> keys, Report& report,
               Done done);

    void begin();

private:
    void show();
    void acted();
    void tell(const std::string& outcome);
    void refuse(const std::string& message);

    CommandLine commandLine_;
    std::shared_ptr<SSHKeyModel> keys_;
    Report& report_;
    Done done_;
    Handle observation_;
};

}  // namespace bildkurier

#pragma once

#include "app/CommandLine.h"
#include "platform/Platform.h"

#include <functional>
#include <optional>
#include <variant>

namespace quillet {

/// The kind of desktop to run on.
struct Backend {
    /// Why no program can show itself; asked before anything of the toolkit is made.
    std::function<std::optional<QString>()> obstacle;
    /// The desktop, or why there is none.
    std::function<std::variant<Platform, QString>()> makePlatform;
};

/// Runs Quillet until it is told to quit, or tells the Quillet that already runs that it was
/// started again. Returns the process's exit code.
int startQuillet(const Command& command, int& argc, char** argv, const Backend& backend);

} // namespace quillet

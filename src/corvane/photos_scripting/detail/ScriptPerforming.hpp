#pragma once

#include "corvane/photos_scripting/PhotosScriptRunner.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::detail {

using ScriptResult = std::optional<PhotosScriptRunner::ErrorInfo>;

// Runs a generated script through the shared runner, after logging it: nothing when no runner is
// there (the script host is what grants access to the application; without one nothing runs and
// nothing is reported).
ScriptResult performScript(const std::string& script, int delaySeconds);

// Calls `perform` on a background thread, then `completion` with its result on the main queue.
void performInBackground(std::function<ScriptResult()> perform, std::function<void(ScriptResult)> completion);

// `text` between double quotes of the script language, with `remove` characters dropped and a
// backslash before each remaining double quote or backslash.
std::string quotedScriptText(std::string_view text, std::string_view remove = {});

} // namespace corvane::detail

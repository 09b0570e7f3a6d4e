#include "corvane/photos_scripting/detail/ScriptPerforming.hpp"

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/OperationQueue.hpp"
#include "corvane/utilities/KitDebugger.hpp"

#include <algorithm>
#include <memory>

namespace corvane::detail {

ScriptResult performScript(const std::string& script, int delaySeconds) {
    const auto runner = PhotosScriptRunner::shared();
    if (!runner) return std::nullopt;
    KitDebugger::shared().log([&] { return "Photos script:\n" + script; });
    return runner->run(script, std::chrono::seconds(std::max(delaySeconds, 0)));
}

void performInBackground(std::function<ScriptResult()> perform,
                         std::function<void(ScriptResult)> completion) {
    // Lives as long as the process, so that a script still running at exit isn't waited for.
    static auto* queue = new OperationQueue("Corvane.PhotosScripting.background");
    queue->addOperation([perform = std::move(perform), completion = std::move(completion)] {
        auto result = std::make_shared<ScriptResult>(perform());
        MainQueue::shared().async([completion, result] { completion(std::move(*result)); });
    });
}

std::string quotedScriptText(std::string_view text, std::string_view remove) {
    std::string quoted = "\"";
    for (char c : text) {
        if (remove.find(c) != std::string_view::npos) continue;
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + "\"";
}

} // namespace corvane::detail

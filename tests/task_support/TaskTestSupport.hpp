#pragma once

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/FileBytes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace corvane::testing {

// Runs a task on this thread, then delivers its notices.
template <class T> std::shared_ptr<T> performed(std::shared_ptr<T> task) {
    task->perform();
    MainQueue::shared().drain();
    return task;
}

// The editors an import made, in the order of their files' paths.
inline std::vector<std::shared_ptr<TagEditor>> sortedEditors(const ImportTagEditorsTask& task) {
    auto editors = task.importedEditors();
    std::sort(editors.begin(), editors.end(),
              [](const auto& a, const auto& b) { return a->source().url() < b->source().url(); });
    return editors;
}

// Runs a task as `performed` does and expects it to end without an error.
template <class T> std::shared_ptr<T> succeeded(std::shared_ptr<T> task) {
    performed(task);
    EXPECT_TRUE(task->errors().empty()) << task->longDescription();
    return task;
}

// The editors of these files, imported with the default settings, in the order of their paths.
inline std::vector<std::shared_ptr<TagEditor>> importFiles(std::vector<TagStorageSource> sources) {
    return sortedEditors(
        *performed(ImportTagEditorsTask::create(ImportTagEditorsTask::Settings(std::move(sources)))));
}

inline std::vector<TagStorageSource> sourcesOf(const std::vector<std::filesystem::path>& paths) {
    std::vector<TagStorageSource> sources;
    for (const auto& path : paths)
        sources.emplace_back(path);
    return sources;
}

// Engines are read when a task is made; this puts them back after a test that narrows them.
struct EngineGuard {
    EngineOption saved = KitSettings::shared().engineOption();
    explicit EngineGuard(EngineOption option) { KitSettings::shared().setEngineOption(option); }
    ~EngineGuard() { KitSettings::shared().setEngineOption(saved); }
};

using test::fileBytes;

inline std::vector<std::string> errorTexts(const AbstractTask& task) {
    std::vector<std::string> texts;
    for (const auto& error : task.errors())
        texts.push_back(AbstractTask::errorDescription(error));
    return texts;
}

} // namespace corvane::testing

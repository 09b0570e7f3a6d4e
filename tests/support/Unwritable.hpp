#pragma once

#include <filesystem>

namespace corvane::test {

// Makes a file impossible to replace, or a folder impossible to add to, for as long as the object
// lives. Root, whom permissions don't stop, gets the path's immutable flag; a plain user gets
// read-only rights on the path and, for a file, on its folder (a rename into the folder would
// replace the file otherwise). `ok()` is false where neither works, e.g. a volume without the flag.
class Unwritable {
public:
    explicit Unwritable(std::filesystem::path path);
    ~Unwritable();
    Unwritable(const Unwritable&) = delete;
    Unwritable& operator=(const Unwritable&) = delete;

    bool ok() const { return ok_; }

private:
    std::filesystem::path path_;
    bool ok_ = false;
    bool immutable_ = false;
};

} // namespace corvane::test

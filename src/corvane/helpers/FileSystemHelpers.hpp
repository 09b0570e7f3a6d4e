#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace corvane {

// Small URL and file-system operations that the storages, engines and tasks share.
// A "URL" here is a file path; the path operations below work on its text and never
// ask the file system, so that a folder is recognised by an empty path extension alone.

/// The path as text, without trailing separators ("/a/b/" gives "/a/b"; "/" stays "/").
std::string urlPath(const std::filesystem::path& url);

/// The last path component, trailing separators ignored ("/a/b.jpg" gives "b.jpg", "/" gives "/").
std::string lastPathComponent(const std::filesystem::path& url);

/// The extension of the last component, without the dot, case kept: "IMG.JPG" gives "JPG".
/// Empty for a component without a dot, with a trailing dot ("a."), or whose only dot leads
/// ("/a/.profile"), so such names count as folders.
std::string pathExtension(const std::filesystem::path& url);

/// The extension upper-cased (ASCII), the key of the media type table.
std::string upperPathExtension(const std::filesystem::path& url);

/// The URL less its last component ("/a/b.jpg" gives "/a"; "/a" gives "/").
std::filesystem::path deletingLastPathComponent(const std::filesystem::path& url);

/// The path with the home folder abbreviated to "~" ("/home/me/x.jpg" gives "~/x.jpg").
/// The home folder comes from $HOME, or the password database when it is unset.
std::string abbreviatingWithTildeInPath(const std::filesystem::path& url);

/// A fresh, unique path in the temporary folder, with the given extension (none when
/// empty): "<tmp>/<UUID>.<ext>". Nothing is created on disk, and nothing deletes it later.
std::filesystem::path temporaryURL(std::string_view pathExt);

/// The files of a folder, as paths under the folder's resolved location:
/// - a URL with a path extension is not a folder and gives an empty list;
/// - symbolic links in the folder's own path are resolved first;
/// - hidden entries (name starting with ".") are skipped, and hidden folders aren't entered;
///   this platform has no package folders, so every other subfolder counts as a plain folder;
/// - subfolders are entered only when `recursively` is true; folders themselves are never
///   listed, only the files (symbolic links to files included, links to folders not followed);
/// - the platform's directory order isn't stable, so each folder's entries are taken in
///   byte order of their names, depth first: a subfolder's files come where the subfolder
///   stands among its siblings;
/// - a folder that can't be read gives an empty list (an unreadable subfolder is left out).
std::vector<std::filesystem::path> listFolderFiles(const std::filesystem::path& url, bool recursively);

/// The whole content of the file at `url`, read to its end (so a pipe works, and a folder fails with
/// the system's reason rather than with a bogus size). Throws FileError naming the file.
std::string readFileBytes(const std::filesystem::path& url);

/// Writes `bytes` to a temporary file beside `url`, flushes it to disk and renames it over `url`,
/// so that readers see either the old file or the whole new one. The file gets `mode` as its
/// rights (0644, a usual document; 0600 for one that only its owner may read). Throws
/// FileError naming the file; on failure `url` is as it was and no temporary file is left.
void writeFileAtomically(const std::filesystem::path& url, std::string_view bytes, mode_t mode = 0644);

} // namespace corvane

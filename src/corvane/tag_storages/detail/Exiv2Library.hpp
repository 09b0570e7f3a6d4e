#pragma once

namespace corvane::detail {

// Makes exiv2 ready for use from any thread; every entry to exiv2 calls it first, and only the
// first call does anything:
// - the XMP toolkit is initialised once, with a lock, since its own initialisation and its shared
//   namespace registry aren't safe to enter from the eight steps of a task at once;
// - exiv2's own log is silenced: its warnings would go to standard error of the host, and a file
//   it can't read reaches the caller as an error anyway;
// - ISO base media files (HEIC, AVIF, CR3) are enabled for reading.
void prepareExiv2Library();

} // namespace corvane::detail

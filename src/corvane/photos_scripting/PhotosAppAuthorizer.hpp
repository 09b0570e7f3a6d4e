#pragma once

#include <functional>

namespace corvane {

/// Whether the library may drive the user's photo application and library on their behalf.
///
/// The answer comes from a probe that returns the platform's status: 0 when allowed, a negative
/// code otherwise (-1743 refused, -600 no photo library). The default probe asks the shared
/// `PhotoLibrary` for access; a host with its own photo application installs its probe.
/// Thread-safe; it blocks while the probe runs, so call it from a task, off the main thread.
class PhotosAppAuthorizer {
public:
    /// Asks the script host whether the Photos application may be driven; gives its status code.
    using Probe = std::function<int()>;

    /// The status codes of a refusal by the user, and of a missing photo library.
    ///@{
    static constexpr int refusedStatus = -1743;
    static constexpr int noLibraryStatus = -600;
    ///@}

    /// Installs the probe (nullptr: the default one).
    static void setProbe(Probe probe);

    /// Runs the probe; true only for a status of 0. With the debug log on, logs the status.
    static bool perform();
};

} // namespace corvane

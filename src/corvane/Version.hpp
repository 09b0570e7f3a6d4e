#pragma once

// The version of the Corvane library these headers belong to. The build reads it from here.

/// \namespace corvane
/// Everything an application uses: editors and their tasks, tables for views, value types,
/// libraries of keywords, places, presets and tag sets, and the settings of both engines.
/// Internals live in `corvane::detail` and are not installed. The library schedules work for the
/// application's main thread on `MainQueue::shared()`, which the host drains from that thread
/// (`MainQueue::shared().drain()`, or its event loop woken by `MainQueue::setWakeHook`).

#define CORVANE_VERSION_MAJOR 0
#define CORVANE_VERSION_MINOR 1
#define CORVANE_VERSION_PATCH 0
#define CORVANE_VERSION "0.1.0"

#pragma once

// The version of the Corvane library these headers belong to. The build reads it from here.
#define CORVANE_VERSION_MAJOR 0
#define CORVANE_VERSION_MINOR 1
#define CORVANE_VERSION_PATCH 0
#define CORVANE_VERSION "0.1.0"

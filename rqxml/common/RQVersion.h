#ifndef RQXML_COMMON_RQVERSION_H
#define RQXML_COMMON_RQVERSION_H

/// @file
/// The version of the two libraries and of the tool. The build reads it from here, so that it stands once.

#define RQXML_VERSION_MAJOR 0
#define RQXML_VERSION_MINOR 1
#define RQXML_VERSION_PATCH 0
/// The version as text, "major.minor.patch".
#define RQXML_VERSION_STRING "0.1.0"

#endif

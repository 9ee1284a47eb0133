#ifndef RQXML_COMMON_RQEXPORT_H
#define RQXML_COMMON_RQEXPORT_H

/// @file
/// The one macro that marks what the shared libraries export; everything else is compiled hidden.

#if defined(__GNUC__)
/// Marks a class or a function as part of the exported interface.
#define RQ_API __attribute__((visibility("default")))
#else
/// Marks a class or a function as part of the exported interface.
#define RQ_API
#endif

#endif

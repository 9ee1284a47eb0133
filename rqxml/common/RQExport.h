#ifndef RQXML_COMMON_RQEXPORT_H
#define RQXML_COMMON_RQEXPORT_H

/// @file
/// The macros that mark what the shared libraries export; everything unmarked is compiled hidden.

#if defined(__GNUC__)
/// Marks a class or a function as part of the exported interface.
#define RQ_API __attribute__((visibility("default")))
/// Keeps a private member of an exported class out of the exported interface.
#define RQ_LOCAL __attribute__((visibility("hidden")))
#else
/// Marks a class or a function as part of the exported interface.
#define RQ_API
/// Keeps a private member of an exported class out of the exported interface.
#define RQ_LOCAL
#endif

#endif

/// @file
/// The visibility macro. Everything else in the library is hidden.
#ifndef COMMONAPI_EXPORT_H
#define COMMONAPI_EXPORT_H

/// Before a declaration: seen outside the library.
///
/// COMMONAPI_STATIC says that the library is linked statically: then nothing of it is seen outside
/// of what it is linked into. CMake and pkg-config define it.
#ifdef COMMONAPI_STATIC
#define COMMONAPI_EXPORT
#else
#define COMMONAPI_EXPORT __attribute__((visibility("default")))
#endif

#endif

/// @file
/// The visibility macro. Everything else in the library is hidden.
#ifndef COMMONAPI_EXPORT_H
#define COMMONAPI_EXPORT_H

/// Before a declaration: seen outside the library.
#define COMMONAPI_EXPORT __attribute__((visibility("default")))

#endif

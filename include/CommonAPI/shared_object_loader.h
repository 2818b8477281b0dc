/// @file
/// Opens plug-ins, finds their symbols and logs who they are.
///
/// A plug-in may publish who it is in two exported variables of type `char const*`, each holding
/// the address of a terminated text or null: `_KeldaSODisplayName` and `_KeldaSOVersion`.
///
/// The loader keeps no list of what is open and adds no flags. These functions have C linkage.
///
/// Threads: opening uses `LogMessageBuffer` without a lock; callers serialise their calls.
#ifndef COMMONAPI_SHARED_OBJECT_LOADER_H
#define COMMONAPI_SHARED_OBJECT_LOADER_H

#include <CommonAPI/export.h>

extern "C" {

/// Opens `path` as `dlopen` does with the same flags, and logs at level 4 for "Plugin Loader" what
/// was loaded: the path, with " - " and the display name, then a blank and the version, as far as
/// the plug-in publishes them. A null `path` opens the running program, which is logged as "current
/// application". The path may lie in `LogMessageBuffer`.
///
/// @return a handle that the caller closes, or null; then the system's reason is logged at level 1
/// for "SharedObjectResource::loadResource()".
COMMONAPI_EXPORT void* OpenSharedLibrary(char const* path, int flags);

/// The result of `dlclose`: 0 on success. REQUIRES: `handle` is open and not null.
COMMONAPI_EXPORT int CloseSharedLibrary(void* handle);

/// The first symbol of that name among the objects that the whole process sees, or null, whoever
/// asks. A plug-in belongs to them when it was opened with `RTLD_GLOBAL`.
COMMONAPI_EXPORT void* FetchSymbol(char const* name);

/// The symbol of that name in the opened object or in what it depends on, or null.
COMMONAPI_EXPORT void* FetchSharedLibraryResource(void* handle, char const* name);
}

#endif

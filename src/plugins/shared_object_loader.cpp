#include <CommonAPI/shared_object_loader.h>

#include <CommonAPI/logging.h>
#include <dlfcn.h>

#include "types/requirement.h"

using CommonAPI::internal::NotNull;

namespace {

constexpr int fatal = 1;
constexpr int information = 4;

char const* TextOrEmpty(char const* text) {
    return text ? text : "";
}

/// The text that an identification variable of a plug-in points to.
std::string Identification(void* handle, char const* variable) {
    void* const address = FetchSharedLibraryResource(handle, variable);
    return address ? TextOrEmpty(*static_cast<char const* const*>(address)) : "";
}

void LogFailure(char const* path) {
    LogMessageBuffer = "Failed to load library (";
    LogMessageBuffer += TextOrEmpty(path);
    LogMessageBuffer += "):  ";
    LogMessageBuffer += TextOrEmpty(dlerror());
    // Not under the loader's own name: a failure is reported for the resource that is missing.
    LogStringMessage(fatal, "SharedObjectResource::loadResource()", LogMessageBuffer);
}

void Announce(void* handle, char const* path) {
    std::string displayName;
    std::string version;
    if (path) {
        displayName = Identification(handle, "_KeldaSODisplayName");
        version = Identification(handle, "_KeldaSOVersion");
    }
    LogMessageBuffer = "Loaded ";
    LogMessageBuffer += path ? path : "current application";
    if (!displayName.empty())
        LogMessageBuffer.append(" - ").append(displayName);
    if (!version.empty())
        LogMessageBuffer.append(" ").append(version);
    LogStringMessage(information, "Plugin Loader", LogMessageBuffer);
}

}  // namespace

void* OpenSharedLibrary(char const* path, int flags) {
    void* const handle = dlopen(path, flags);
    if (handle)
        Announce(handle, path);
    else
        LogFailure(path);
    return handle;
}

int CloseSharedLibrary(void* handle) {
    return dlclose(handle);
}

void* FetchSymbol(char const* name) {
    return dlsym(RTLD_DEFAULT, NotNull(name, "FetchSymbol"));
}

void* FetchSharedLibraryResource(void* handle, char const* name) {
    return dlsym(handle, NotNull(name, "FetchSharedLibraryResource"));
}

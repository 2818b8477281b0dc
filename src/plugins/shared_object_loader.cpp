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

void LogFailure(std::string const& path) {
    LogMessageBuffer = "Failed to load library (";
    LogMessageBuffer += path;
    LogMessageBuffer += "):  ";
    LogMessageBuffer += TextOrEmpty(dlerror());
    // Not under the loader's own name: a failure is reported for the resource that is missing.
    LogStringMessage(fatal, "SharedObjectResource::loadResource()", LogMessageBuffer);
}

void Announce(std::string const& name, std::string const& displayName, std::string const& version) {
    LogMessageBuffer = "Loaded ";
    LogMessageBuffer += name;
    if (!displayName.empty())
        LogMessageBuffer.append(" - ").append(displayName);
    if (!version.empty())
        LogMessageBuffer.append(" ").append(version);
    LogStringMessage(information, "Plugin Loader", LogMessageBuffer);
}

}  // namespace

void* OpenSharedLibrary(char const* path, int flags) {
    // A copy: the path may lie in the shared text, where what the plug-in logs would overwrite it.
    std::string const name = TextOrEmpty(path);
    void* const handle = dlopen(path ? name.c_str() : nullptr, flags);
    if (!handle)
        LogFailure(name);
    else if (path)
        Announce(name, Identification(handle, "_KeldaSODisplayName"),
                 Identification(handle, "_KeldaSOVersion"));
    else
        Announce("current application", "", "");
    return handle;
}

int CloseSharedLibrary(void* handle) {
    return dlclose(handle);
}

void* FetchSymbol(char const* name) {
    void* const symbol = dlsym(RTLD_DEFAULT, NotNull(name, "FetchSymbol"));
    // Something to do after the search, as it takes whoever it returns to for the one who asks:
    // with a jump to it, that would be a plug-in with a scope of its own.
    asm volatile("" : : "r"(symbol));
    return symbol;
}

void* FetchSharedLibraryResource(void* handle, char const* name) {
    return dlsym(handle, NotNull(name, "FetchSharedLibraryResource"));
}

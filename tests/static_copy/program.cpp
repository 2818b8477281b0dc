// Linked with the shared library, which a plug-in with a static copy of it leaves alone.
#include <CommonAPI/logging.h>
#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

#include <fstream>
#include <iostream>
#include <sstream>

namespace {

bool Fails(bool right, char const* what) {
    if (!right)
        std::cerr << "program: " << what << '\n';
    return !right;
}

bool IsIn(char const* path, char const* text) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str().find(text) != std::string::npos;
}

}  // namespace

int main(int /* count */, char** arguments) {
    AttributeMap settings;
    settings["Global"] = "4";
    InitializeLogger("program.log", &settings, "program", false);

    void* const plugin = OpenSharedLibrary(arguments[1], RTLD_NOW | RTLD_GLOBAL);
    void* const log = FetchSharedLibraryResource(plugin, "LogInThePlugin");
    LogMessageBuffer = "a text that needs storage in the program";
    reinterpret_cast<void (*)(char const*)>(log)("plugin.log");
    CloseSharedLibrary(plugin);
    std::string const kept = LogMessageBuffer;
    LogMessage(4, "Program", "goes on");

    int faults = 0;
    faults += Fails(kept == "a text that needs storage in the program",
                    "the plug-in changed the program's LogMessageBuffer");
    faults += Fails(IsIn("program.log", "Program:  goes on\n"), "the program's log stopped");
    faults += Fails(!IsIn("program.log", "Plugin:  "), "the plug-in used the program's log");
    faults += Fails(IsIn("plugin.log", "Plugin:  a text"), "the plug-in's log lacks its line");
    faults += Fails(IsIn("plugin.log", "Terminating"), "the plug-in's log is not closed");
    return faults;
}

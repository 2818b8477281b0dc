// Linked with the shared library, which a plug-in with a static copy of it leaves alone.
#include <CommonAPI/logging.h>
#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

int main(int /* count */, char** arguments) {
    InitializeLogger("program.log", nullptr, "program", false);
    void* const plugin = OpenSharedLibrary(arguments[1], RTLD_NOW | RTLD_GLOBAL);
    void* const log = FetchSharedLibraryResource(plugin, "LogInThePlugin");
    LogMessageBuffer = "its text";
    reinterpret_cast<void (*)()>(log)();
    CloseSharedLibrary(plugin);
    LogStringMessage(1, "Program", LogMessageBuffer);
    TerminateLogger();
    LogMessage(1, "Program", "no log");  // on a stream that nothing else has made
}

#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/unicode_string.h>
#include <dlfcn.h>

#include <iostream>
#include <string>

int main(int count, char** arguments) {
    void* const plugin = count > 1 ? OpenSharedLibrary(arguments[1], RTLD_NOW) : nullptr;
    if (!plugin)
        return 1;

    using Describe = void (*)(UnicodeString&, std::string&);
    void* const entryPoint = FetchSharedLibraryResource(plugin, "DescribeText");
    if (entryPoint) {
        UnicodeString text("Grüße aus Köln");
        std::string description;
        reinterpret_cast<Describe>(entryPoint)(text, description);
        std::cout << description << "\n";
    }
    return CloseSharedLibrary(plugin);
}

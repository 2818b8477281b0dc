#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/unicode_string.h>
#include <dlfcn.h>

#include <filesystem>
#include <iostream>
#include <string>

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "plugins: needs a plug-in, such as samples/plugin/text_statistics.so\n";
        return 1;
    }
    // Whole, as a bare name would be looked for in the system's folders only.
    std::string const path = std::filesystem::absolute(arguments[1]);
    void* const plugin = OpenSharedLibrary(path.c_str(), RTLD_NOW);
    if (!plugin) {
        dlopen(path.c_str(), RTLD_NOW);  // for the reason, which goes into a log alone
        std::cerr << "plugins: " << dlerror() << '\n';
        return 1;
    }

    using Describe = void (*)(UnicodeString&, std::string&);
    void* const entryPoint = FetchSharedLibraryResource(plugin, "DescribeText");
    if (!entryPoint) {
        std::cerr << "plugins: " << path << ": has no DescribeText\n";
        return 1;
    }
    UnicodeString text("Grüße aus Köln");
    std::string description;
    reinterpret_cast<Describe>(entryPoint)(text, description);
    std::cout << description << '\n';
    return CloseSharedLibrary(plugin);
}

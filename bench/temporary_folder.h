#ifndef COMMONAPI_BENCH_TEMPORARY_FOLDER_H
#define COMMONAPI_BENCH_TEMPORARY_FOLDER_H

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

/// A new folder of a name that nobody can foresee, gone with this object.
class TemporaryFolder {
public:
    TemporaryFolder() : path(std::filesystem::temp_directory_path() / "commonapi-XXXXXX") {
        if (!mkdtemp(path.data()))
            throw std::system_error(errno, std::generic_category(), path);
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::string file(char const* name) const { return path + "/" + name; }

private:
    std::string path;
};

#endif

// The program of start_ours.cpp without the library.
#include <map>
#include <string>

int main() {
    std::map<std::string, std::string> settings;
    settings.emplace("Global", "2");
    return settings["Global"].length() == 1 ? 0 : 1;
}

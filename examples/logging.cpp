#include <CommonAPI/logging.h>

#include <cstdio>

int main(int count, char** arguments) {
    AttributeMap settings;
    settings["Global"] = "2";   // errors and worse
    settings["Import"] = "4";   // everything down to information
    settings["Preview"] = "5";  // nothing at all
    char const* const log = count > 1 ? arguments[1] : "logging.log";
    if (!InitializeLogger(log, &settings, "sample", false)) {
        std::perror(log);
        return 1;
    }
    std::printf("The log is %s\n", log);

    LogMessage(4, "Import", "3 pages read");
    LogMessage(3, "Export", "not written: a warning, but the threshold is 2");
    LogMessageBuffer = "page ";
    LogMessageBuffer += "4 is empty";
    LogStringMessage(2, "Export", LogMessageBuffer);  // and empties the text
}

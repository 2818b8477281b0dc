#include <CommonAPI/logging.h>
#include <CommonAPI/system_information.h>
#include <CommonAPI/text_utilities.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <utility>

#include "logging/clock.h"
#include "logging/log_file.h"
#include "logging/log_settings.h"

namespace {

constexpr char const* dashes = "--------------------------------\n";

void AppendSystemNames(std::string& header) {
    utsname system;
    if (uname(&system) == -1)
        return;
    header.append("System name:\t").append(system.sysname);
    header.append("\nNode name:\t").append(system.nodename);
    header.append("\nRelease:\t").append(system.release);
    header.append("\nVersion:\t").append(system.version);
    header.append("\nMachine:\t").append(system.machine).append("\n");
}

void AppendSettings(std::string& header) {
    std::string module;
    std::string level;
    AttributeMap& settings = CommonAPI::internal::LogSettings();
    for (long i = 0; settings.fetchAttributeValueByIndex(i, module, level); ++i)
        header.append("Log level for module ")
            .append(module)
            .append(" is ")
            .append(level)
            .append("\n");
}

}  // namespace

void CaptureInitialLogInfo(char const* applicationName) {
    std::string header;  // of its own, as the name may lie in the shared text
    if (applicationName)
        header.append(dashes)
            .append("Application:  ")
            .append(applicationName)
            .append("\n")
            .append(dashes);
    header.append("Time Stamp:\t").append(CommonAPI::internal::CurrentTime("%x %X")).append("\n");
    header.append("Process ID:\t").append(itoa(static_cast<long>(getpid()))).append("\n");
    AppendSystemNames(header);
    AppendSettings(header);
    header.append(dashes);
    CommonAPI::internal::WriteToLog(header);
    LogMessageBuffer = std::move(header);
}

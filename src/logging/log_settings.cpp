#include "logging/log_settings.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "types/immortal.h"

namespace {

struct ModuleThreshold {
    std::string module;
    int threshold;
};

/// The numbers that the settings stand for, read once instead of for each message; in the order of
/// the modules.
using Thresholds = std::vector<ModuleThreshold>;

Thresholds const* moduleThresholds = nullptr;  // none before the first settings
int globalThreshold = CommonAPI::internal::logOff;

void FindHighestThreshold() {
    using CommonAPI::internal::highestLogThreshold;
    using CommonAPI::internal::logOff;

    int highest = globalThreshold == logOff ? INT_MIN : globalThreshold;
    if (moduleThresholds)
        for (ModuleThreshold const& entry : *moduleThresholds)
            if (entry.threshold != logOff)
                highest = std::max(highest, entry.threshold);
    highestLogThreshold = highest;
}

}  // namespace

int CommonAPI::internal::highestLogThreshold = INT_MIN;

AttributeMap& CommonAPI::internal::LogSettings() {
    static Immortal<AttributeMap> settings;
    return *settings;
}

void CommonAPI::internal::SetLogSettings(AttributeMap const& source) {
    AttributeMap& settings = LogSettings();
    settings = source;
    auto thresholds = std::make_unique<Thresholds>();
    thresholds->reserve(static_cast<std::size_t>(settings.size()));
    std::string name;
    std::string value;
    for (long i = 0; settings.fetchAttributeValueByIndex(i, name, value); ++i)
        thresholds->push_back({name, std::atoi(value.c_str())});
    delete std::exchange(moduleThresholds, thresholds.release());
    FindHighestThreshold();
}

void CommonAPI::internal::SetGlobalLogThreshold(int threshold) {
    globalThreshold = threshold;
    FindHighestThreshold();
}

bool CommonAPI::internal::PassesLogThreshold(int level, std::string_view module) {
    int threshold = globalThreshold;
    if (moduleThresholds) {
        auto const entry = std::ranges::lower_bound(*moduleThresholds, module, std::less<>(),
                                                    &ModuleThreshold::module);
        if (entry != moduleThresholds->end() && entry->module == module)
            threshold = entry->threshold;
    }
    return level <= threshold && threshold != logOff;
}

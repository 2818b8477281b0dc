#include "logging/log_settings.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "types/immortal.h"

namespace {

/// The numbers that the settings stand for, read once instead of for each message.
using Thresholds = std::map<std::string, int, std::less<>>;

Thresholds const* moduleThresholds = nullptr;  // none before the first settings
int globalThreshold = CommonAPI::internal::logOff;

void FindHighestThreshold() {
    using CommonAPI::internal::highestLogThreshold;
    using CommonAPI::internal::logOff;

    int highest = globalThreshold == logOff ? INT_MIN : globalThreshold;
    if (moduleThresholds)
        for (auto const& [name, threshold] : *moduleThresholds)
            if (threshold != logOff)
                highest = std::max(highest, threshold);
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
    std::string name;
    std::string value;
    for (long i = 0; settings.fetchAttributeValueByIndex(i, name, value); ++i)
        (*thresholds)[name] = std::atoi(value.c_str());
    delete std::exchange(moduleThresholds, thresholds.release());
    FindHighestThreshold();
}

void CommonAPI::internal::SetGlobalLogThreshold(int threshold) {
    globalThreshold = threshold;
    FindHighestThreshold();
}

bool CommonAPI::internal::PassesLogThreshold(int level, std::string_view module) {
    int threshold = globalThreshold;
    if (moduleThresholds)
        if (auto const entry = moduleThresholds->find(module); entry != moduleThresholds->end())
            threshold = entry->second;
    return level <= threshold && threshold != logOff;
}

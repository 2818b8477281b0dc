#include <CommonAPI/paper_size.h>

#include <CommonAPI/logging.h>

#include <tuple>
#include <utility>

#include "types/requirement.h"

namespace {

constexpr int warning = 3;
constexpr int information = 4;

void Log(int level, char const* text, std::string const& key) {
    LogMessageBuffer = text;
    LogMessageBuffer += key;
    LogStringMessage(level, "PaperSizeAPI", LogMessageBuffer);
}

}  // namespace

// By value: clients that take the comparator's address rely on the signature.
bool StringCompareClass::operator()(std::string a, std::string b) const {
    return a.compare(b) < 0;
}

PaperSizeData const* PaperSize::findMediaDataByKey(std::string key) {
    auto const entry = sizes.find(key);
    if (entry == sizes.end()) {
        Log(warning, "findMediaDataByKey: Failed to find media:  ", key);
        return nullptr;
    }
    Log(information, "findMediaDataByKey: Found media:  ", key);
    return entry->second;
}

void PaperSize::addPaperSizeToList(PaperSizeData const* data) {
    CommonAPI::internal::NotNull(data, "PaperSize::addPaperSizeToList");
    sizes.insert_or_assign(data->name, data);
    Log(information, "addPaperSizeToList: Paper size added:  ", data->name);
}

bool PaperSize::getPaperSizeInPts(std::string key, int& width, int& height) {
    // The search logs a line of its own.
    PaperSizeData const* const data = findMediaDataByKey(key);
    // Together, as the outputs may be the record's own fields.
    std::tie(width, height) = data ? std::pair(data->widthPts, data->heightPts) : std::pair(-1, -1);
    if (data)
        Log(information, "getPaperSizeInPts: Found paper size:  ", key);
    else
        Log(warning, "getPaperSizeInPts: Failed to find paper size:  ", key);
    return data != nullptr;
}

bool PaperSize::getPaperSizeInMM(std::string key, float& width, float& height) {
    PaperSizeData const* const data = findMediaDataByKey(key);
    std::tie(width, height) =
        data ? std::pair(data->widthMM, data->heightMM) : std::pair(-1.0f, -1.0f);
    if (data)
        Log(information, "getPaperSizeInMM: Found paper size:  ", key);
    else
        Log(warning, "getPaperSizeInMM: Failed to find paper size:  ", key);
    return data != nullptr;
}

bool PaperSize::removePaperSizeFromList(std::string key) {
    auto const entry = sizes.find(key);
    if (entry == sizes.end()) {
        Log(warning, "removePaperSizeFromList: Failed to find paper size to erase:  ", key);
        return false;
    }
    sizes.erase(entry);
    Log(information, "removePaperSizeFromList: Paper size removed:  ", key);
    return true;
}

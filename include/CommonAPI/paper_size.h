/// @file
/// `PaperSize`, a registry of named paper sizes.
#ifndef COMMONAPI_PAPER_SIZE_H
#define COMMONAPI_PAPER_SIZE_H

#include <CommonAPI/export.h>

#include <map>
#include <string>

/// A paper size. Points and millimetres are independent figures: nothing converts or compares them.
struct PaperSizeData {
    std::string name;  ///< The key of the record.
    int widthPts;      ///< In points.
    int heightPts;     ///< In points.
    float widthMM;     ///< In millimetres.
    float heightMM;    ///< In millimetres.
};

/// Orders names byte by byte: "A4" and "a4" differ.
class COMMONAPI_EXPORT StringCompareClass {
public:
    /// True when `a` comes before `b`.
    bool operator()(std::string a, std::string b) const;
};

/// Paper sizes by name; each name, the empty one too, at most once. It starts empty.
///
/// Ownership: the registry keeps pointers to the caller's records. A record must outlive its
/// registration, and its name must not change meanwhile.
///
/// Every operation logs for "PaperSizeAPI": at level 4 what it found or did, at level 3 a name that
/// it did not find. The two getters log twice, once for their search and once for themselves.
///
/// Threads: logging goes through `LogMessageBuffer` without a lock, so the caller serialises calls,
/// even those of distinct registries.
class COMMONAPI_EXPORT PaperSize {
public:
    /// The record of that name, or null.
    PaperSizeData const* findMediaDataByKey(std::string key);
    /// Registers `data` under its name, in place of an earlier record of that name.
    /// REQUIRES: `data` is not null.
    void addPaperSizeToList(PaperSizeData const* data);
    /// The size in points; false, and -1 for both, when the name is not registered.
    bool getPaperSizeInPts(std::string key, int& width, int& height);
    /// The size in millimetres; false, and -1 for both, when the name is not registered.
    bool getPaperSizeInMM(std::string key, float& width, float& height);
    /// Forgets the record of that name; false when there is none.
    bool removePaperSizeFromList(std::string key);

private:
    std::map<std::string, PaperSizeData const*, StringCompareClass> sizes;
};

#endif

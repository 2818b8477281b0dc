#include "types/requirement.h"

#include <CommonAPI/blowfish.h>
#include <CommonAPI/paper_size.h>
#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/system_information.h>

#include "support/child_process.h"

TEST(Hardened, EndsTheProcessAndNamesTheCall) {
    if (!CommonAPI::internal::hardened)
        GTEST_SKIP() << "nothing is checked in this build";
    static ByteArray bytes("1234567");
    static UnicodeString text("text");
    static char const* const null = nullptr;
    static char name[] = "NAME";
    std::pair<std::string, void (*)()> const calls[] = {
        {"ByteArray::operator\\[\\]", [] { bytes[7]; }},
        {"ByteArray::at", [] { bytes.at(4); }},
        {"ByteArray::append", [] { bytes.append(null, 1); }},
        {"ByteArray::assign", [] { bytes.assign(7, static_cast<unsigned char>(0)); }},
        {"ByteArray::assign", [] { bytes.assign(4, 0u); }},
        {"ByteArray::insert", [] { bytes.insert(8, "", 0); }},
        {"ByteArray::erase", [] { bytes.erase(2, 1); }},
        {"ByteArray::resize", [] { bytes.resize(-1L, 0); }},
        {"ByteArray::find", [] { bytes.find(ByteArray(), -1); }},
        {"UnicodeString::operator=", [] { text = null; }},
        {"UnicodeString::find", [] { text.find(null, 0); }},
        {"LogMessage", [] { LogMessage(9, null, ""); }},
        {"SetEnvironmentVariable", [] { SetEnvironmentVariable(name, nullptr); }},
        {"FetchSharedLibraryResource", [] { FetchSharedLibraryResource(nullptr, null); }},
        {"PaperSize::addPaperSizeToList", [] { PaperSize().addPaperSizeToList(nullptr); }},
        {"Blowfish::generateSubKeys", [] { Blowfish().generateSubKeys(null); }}};
    for (auto const& [call, body] : calls) {
        ChildResult const child = RunInChild(body);
        EXPECT_EQ(child.status, -SIGABRT) << call;
        EXPECT_THAT(child.errors, testing::MatchesRegex("CommonAPI: " + call + ": [a-z ]+\n"));
    }
}

#include "types/requirement.h"

#include <CommonAPI/blowfish.h>

#include "support/child_process.h"

TEST(Hardened, EndsTheProcessAndNamesTheCall) {
    if (!CommonAPI::internal::hardened)
        GTEST_SKIP() << "nothing is checked in this build";
    static ByteArray bytes("1234567");
    static char const* const null = nullptr;
    std::pair<std::string, void (*)()> const calls[] = {
        {"ByteArray::operator\\[\\]", [] { bytes[7]; }},
        {"ByteArray::at", [] { bytes.at(4); }},
        {"ByteArray::append", [] { bytes.append(null, 1); }},
        {"ByteArray::assign", [] { bytes.assign(7, static_cast<unsigned char>(0)); }},
        {"ByteArray::assign", [] { bytes.assign(4, 0u); }},
        {"ByteArray::insert", [] { bytes.insert(8, "", 0); }},
        {"ByteArray::erase", [] { bytes.erase(2, 1); }},
        {"ByteArray::resize", [] { bytes.resize(-1L, 0); }},
        {"UnicodeString::operator=", [] { UnicodeString() = null; }},
        {"LogMessage", [] { LogMessage(9, null, ""); }},
        {"Blowfish::generateSubKeys", [] { Blowfish().generateSubKeys(null); }}};
    for (auto const& [call, body] : calls) {
        ChildResult const child = RunInChild(body);
        EXPECT_EQ(child.status, -SIGABRT) << call;
        EXPECT_THAT(child.errors, testing::MatchesRegex("CommonAPI: " + call + ": [a-z ]+\n"));
    }
}

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
        {"ByteArray::assign", [] { bytes.assign(7, static_cast<unsigned char>(0)); }},
        {"ByteArray::erase", [] { bytes.erase(2, 1); }},
        {"UnicodeString::operator=", [] { UnicodeString() = null; }},
        {"LogMessage", [] { LogMessage(9, null, ""); }},
        {"Blowfish::generateSubKeys", [] { Blowfish().generateSubKeys(null); }}};
    for (auto const& [call, body] : calls) {
        ChildResult const child = RunInChild(body);
        EXPECT_EQ(child.status, -SIGABRT) << call;
        EXPECT_THAT(child.errors, testing::MatchesRegex("CommonAPI: " + call + ": [a-z ]+\n"));
    }
}

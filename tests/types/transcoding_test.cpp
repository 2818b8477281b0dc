#include <CommonAPI/unicode_string.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <iconv.h>
#include <sys/time.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <map>

#include "support/child_process.h"
#include "types/requirement.h"

static int opened = 0, closed = 0;
static std::string refused;  // what no converter can be opened to

#define TEXT_OF(name) #name
#define REAL(name) reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, TEXT_OF(name)))

// These stand in front of the conversion library's, to count and to fail.
extern "C" iconv_t iconv_open(char const* to, char const* from) {
    ++opened;
    errno = EMFILE;
    return to == refused ? reinterpret_cast<iconv_t>(-1) : REAL(iconv_open)(to, from);
}

extern "C" int iconv_close(iconv_t converter) {
    ++closed;
    return REAL(iconv_close)(converter);
}

TEST(Transcoding, OpensEachConverterOnceAndClosesAllAtExit) {
    ChildResult const child = RunInChild([] {
        std::atexit([] { std::printf("closed %d", closed); });
        UnicodeString(L"text").c_str();
        std::printf("base %d,", opened);
        // UTF-8 finds the base converter of the opposite direction.
        for (char const* const encoding : {"UTF-8", "ISO-8859-1", "ISO-8859-1", "none", "none"}) {
            UnicodeString(encoding, "x");
            std::printf(" %s %d,", encoding, opened);
        }
    });
    EXPECT_EQ(child.output, "base 2, UTF-8 2, ISO-8859-1 3, ISO-8859-1 3, none 4, none 5,closed 3");
}

static void PrintDerivedForms() {
    UnicodeString narrow("abc"), wide(L"abc");
    std::printf("%ls,%s;", narrow.wc_str(), wide.c_str());
}

TEST(Transcoding, WithoutAConverterTheFormStaysEmpty) {
    // What cannot be opened, the output, and once more when the converters are closed.
    for (auto const& [name, output] : std::map<std::string, std::string>{
             {"WCHAR_T", ",;,;"}, {"UTF-8", "abc,;,;"}, {"nothing", "abc,abc;,;"}}) {
        ChildResult const child = RunInChild([&name = name] {
            refused = name;
            std::atexit(PrintDerivedForms);
            PrintDerivedForms();
        });
        EXPECT_EQ(child.output, output);
    }
}

TEST(Transcoding, IllegalInputClearsOnlyTheFormBeingProduced) {
    for (char const* const illegal : {"a\xff", "\x80", "\xc0\xaf", "\xed\xa0\x80"}) {
        UnicodeString text(illegal);
        EXPECT_STREQ(text.wc_str(), L"");
        EXPECT_STREQ(text.c_str(), illegal);
    }
    wchar_t const surrogate[] = {L'a', 0xD800, L'\0'};
    UnicodeString text(surrogate);
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_STREQ(text.wc_str(), surrogate);
    for (int const reason : {EILSEQ, E2BIG, EINVAL}) {
        errno = reason;
        EXPECT_EQ(text.transcodingError(-1), reason == EILSEQ);
        EXPECT_FALSE(text.transcodingError(0));
    }
}

TEST(Transcoding, TextCutInsideACharacterIsWaitedForForEverUnlessHardened) {
    for (char const* const cut : {"\xc3", "ab\xe2\x82", "\xf0\x9f\x98"}) {
        ChildResult const child = RunInChild([&] {
            itimerval const limit = {{0, 0}, {0, 100000}};
            setitimer(ITIMER_VIRTUAL, &limit, nullptr);
            std::printf("%ls", UnicodeString(cut).wc_str());
        });
        EXPECT_EQ(child.status, CommonAPI::internal::hardened ? 0 : -SIGVTALRM);
        EXPECT_EQ(child.output, "");
    }
}

TEST(Transcoding, CountsAreInBytes) {
    UnicodeString text;
    EXPECT_STREQ(text.transcodeMessage(L"abcd", 11), "ab");  // the rest of 3 bytes is left
    EXPECT_STREQ(text.transcodeMessage("abcd", 2), L"ab");
    EXPECT_STREQ(text.c_str(), "abcd");
    EXPECT_STREQ(text.transcodeMessage("abcd", 0xFFFFFFFF), L"abcd");
    EXPECT_STREQ(text.transcodeMessage("abcd", 0), L"");
    EXPECT_STREQ(text.transcodeMessage("ab\0cd", 5), L"ab");
    EXPECT_STREQ(text.transcodeMessage("xyz", 3), L"xyz");  // nothing of "cd" was left behind
}

TEST(Transcoding, LongTextsConvertWhole) {
    for (std::size_t const length : {16383u, 16384u, 65534u, 65535u, 65536u, 200000u})
        for (wchar_t const character : {L'x', L'\U0001F600'}) {
            std::wstring const wide(length, character);
            std::string const narrow = UnicodeString(wide.c_str()).c_str();
            EXPECT_TRUE(UnicodeString(narrow).wc_str() == wide) << length;
        }
}

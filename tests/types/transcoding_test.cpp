#include <CommonAPI/unicode_string.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <iconv.h>
#include <sys/time.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include "support/child_process.h"

// Ours stand in front of the conversion library's, to count and to fail.
namespace {

int opened = 0;
int closed = 0;
char const* refused = "";  // the name that no converter can be opened to

template <class Function>
Function* Real(char const* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" iconv_t iconv_open(char const* to, char const* from) {
    ++opened;
    if (std::string(to) == refused) {
        errno = EMFILE;
        return reinterpret_cast<iconv_t>(-1);
    }
    return Real<iconv_t(char const*, char const*)>("iconv_open")(to, from);
}

extern "C" int iconv_close(iconv_t converter) {
    ++closed;
    return Real<int(iconv_t)>("iconv_close")(converter);
}

namespace {

TEST(Transcoding, OpensEachConverterOnceAndClosesAllAtExit) {
    ChildResult const child = RunInChild([] {
        std::atexit([] { std::printf("closed %d", closed); });
        UnicodeString(L"text").c_str();
        std::printf("base %d, ", opened);
        UnicodeString("ISO-8859-1", "x");
        UnicodeString("ISO-8859-1", "y");
        std::printf("target %d, ", opened);
        UnicodeString("UTF-8", "z");  // finds the base converter of the opposite direction
        std::printf("again %d, ", opened);
        UnicodeString("no such encoding", "z");
        UnicodeString("no such encoding", "z");
        std::printf("failed %d, ", opened);
    });
    EXPECT_EQ(child.output, "base 2, target 3, again 3, failed 5, closed 3");
    EXPECT_EQ(child.status, 0);
}

TEST(Transcoding, WithoutAConverterTheFormStaysEmpty) {
    // What cannot be opened, the output, and once more when the converters are closed.
    using Row = std::pair<char const*, char const*>;
    for (auto const& [name, output] :
         {Row{"WCHAR_T", ",;,;"}, Row{"UTF-8", "abc,;,;"}, Row{"", "abc,abc;,;"}}) {
        ChildResult const child = RunInChild([name = name] {
            static auto const convert = [] {
                UnicodeString narrow("abc");
                UnicodeString wide(L"abc");
                std::printf("%ls,%s;", narrow.wc_str(), wide.c_str());
            };
            refused = name;
            std::atexit(convert);
            convert();
        });
        EXPECT_EQ(child.output, output);
        EXPECT_EQ(child.status, 0);
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
}

TEST(Transcoding, TextCutInsideACharacterIsWaitedForForEver) {
    for (char const* const cut : {"\xc3", "ab\xe2\x82", "\xf0\x9f\x98"}) {
        ChildResult const child = RunInChild([&] {
            itimerval const limit = {{0, 0}, {0, 100000}};
            setitimer(ITIMER_VIRTUAL, &limit, nullptr);
            UnicodeString(cut).wc_str();
        });
        EXPECT_EQ(child.status, -SIGVTALRM);
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
    for (std::size_t const length : {16383u, 16384u, 65534u, 65535u, 65536u, 200000u}) {
        std::wstring const wide(length, L'\U0001F600');
        UnicodeString text(wide.c_str());
        std::string const narrow = text.c_str();
        ASSERT_EQ(narrow.size(), 4 * length);
        EXPECT_EQ(UnicodeString(narrow).wc_str(), wide) << length;
        std::string const plain(length, 'x');
        EXPECT_EQ(UnicodeString(plain).wc_str(), std::wstring(length, L'x')) << length;
    }
}

TEST(Transcoding, OnlyAnIllegalSequenceIsAnError) {
    UnicodeString const text;
    for (int const reason : {EILSEQ, E2BIG, EINVAL}) {
        errno = reason;
        EXPECT_EQ(text.transcodingError(-1), reason == EILSEQ);
        EXPECT_FALSE(text.transcodingError(0));
    }
}

}  // namespace

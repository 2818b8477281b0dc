#include <dlfcn.h>
#include <iconv.h>

#include "support/child_process.h"
#include "types/requirement.h"

// Each body runs in a process that has not converted anything yet.

static int opened = 0;
static int closed = 0;
static std::string refused;  // what no converter can be opened to

#define TEXT_OF(name) #name
#define NAME_OF(function) TEXT_OF(function)  // which GNU libiconv gives names of its own

// These stand in front of the conversion library's, to count and to fail.
extern "C" iconv_t iconv_open(char const* to, char const* from) {
    static auto const real =
        reinterpret_cast<decltype(&iconv_open)>(dlsym(RTLD_NEXT, NAME_OF(iconv_open)));
    ++opened;
    return to == refused ? reinterpret_cast<iconv_t>(-1) : real(to, from);
}

extern "C" int iconv_close(iconv_t) {
    ++closed;
    return 0;
}

TEST(Transcoding, OpensEachConverterOnceAndClosesAllAtExit) {
    ChildResult const child = RunInChild([] {
        std::atexit([] { std::printf("closed %d", closed); });
        UnicodeString(L"text").c_str();
        std::printf("base %d,", opened);
        // UTF-8 finds the base converter of the opposite direction. ASCII is built in: most
        // others are modules, which the C libraries of cross compilers lack.
        for (char const* const encoding : {"UTF-8", "ASCII", "ASCII", "none", "none"}) {
            UnicodeString(encoding, "x");
            std::printf(" %s %d,", encoding, opened);
        }
    });
    EXPECT_EQ(child.output, "base 2, UTF-8 2, ASCII 3, ASCII 3, none 4, none 5,closed 3");
}

static void PrintDerivedForms() {
    UnicodeString narrow("abc");
    UnicodeString wide(L"abc");
    std::printf("%ls,%s;", narrow.wc_str(), wide.c_str());
}

TEST(Transcoding, WithoutAConverterTheFormStaysEmpty) {
    for (auto const& [encoding, expected] :
         {std::pair("WCHAR_T", ",;"), std::pair("UTF-8", "abc,;"), std::pair("none", "abc,abc;")}) {
        ChildResult const child = RunInChild([encoding = encoding] {
            refused = encoding;
            std::atexit(PrintDerivedForms);
            PrintDerivedForms();
        });
        EXPECT_EQ(child.output, std::string(expected) + ",;") << encoding << " refused, then all";
    }
}

TEST(Transcoding, TextCutInsideACharacterIsWaitedForForEverUnlessHardened) {
    ChildResult const child = RunInChild([] {
        itimerval const limit = {{0, 0}, {0, 100000}};
        setitimer(ITIMER_VIRTUAL, &limit, nullptr);
        std::printf("%ls", UnicodeString("ab\xe2\x82").wc_str());
    });
    EXPECT_EQ(child.status, CommonAPI::internal::hardened ? 0 : -SIGVTALRM);
    EXPECT_EQ(child.output, "");
}

TEST(Transcoding, LongTextsConvertWhole) {
    for (std::size_t const length : {16383u, 16384u, 65535u, 65536u, 200000u}) {
        std::wstring const wide(length, L'\U0001F600');
        UnicodeString const narrow(UnicodeString(wide.c_str()).c_str());
        EXPECT_TRUE(UnicodeString(narrow).wc_str() == wide) << length << " characters";
    }
}

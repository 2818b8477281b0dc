#include <dlfcn.h>
#include <iconv.h>
#include <sys/mman.h>
#include <sys/time.h>

#include "../examples/files.h"
#include "support/child_process.h"
#include "types/requirement.h"

static int opened = 0, closed = 0;
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
    return ++closed, 0;
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

/// A copy that ends where nothing can be read any more.
static void* AtAnEnd(void const* data, std::size_t size) {
    static auto const pages = static_cast<char*>(
        mmap(nullptr, 8192, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(pages + 4096, 4096, PROT_NONE);
    return std::memcpy(pages + 4096 - size, data, size);
}

TEST(Transcoding, JudgesEverySequenceAsTheConverterDoes) {
    static iconv_t const converter = iconv_open("WCHAR_T", "UTF-8");
    for (int i = 0; i < 255 * 1000; ++i) {
        std::string text(1, static_cast<char>(1 + i % 255));
        for (int rest = i / 255; rest % 10 != 0; rest /= 10)
            text += "A\x7F\x80\x8F\x90\x9F\xA0\xBF\xC2"[rest % 10 - 1];
        wchar_t expected[5] = {};
        std::size_t size = text.size(), left = size, room = 4 * size;
        char *from = text.data(), *to = reinterpret_cast<char*>(expected);
        errno = 0, iconv(converter, &from, &left, &to, &room);
        if (errno == EINVAL) {  // the sample client must not begin this
            ASSERT_TRUE(EndsInsideCharacter(text)) << i;
            continue;
        }
        UnicodeString string;
        bool const illegal = errno == EILSEQ;
        auto const narrow = static_cast<char*>(AtAnEnd(text.c_str(), size + 1));
        ASSERT_STREQ(string.transcodeMessage(narrow, 0xFFFFFFFF), illegal ? L"" : expected) << i;
        ASSERT_EQ(string.c_str(), text);
        std::size_t const bytes = illegal ? 0 : 4 * std::wcslen(expected);
        auto const wide = static_cast<wchar_t*>(AtAnEnd(expected, bytes));
        string.transcodeMessage(wide, static_cast<unsigned int>(bytes));
        ASSERT_EQ(std::string(string.c_str()), illegal ? "" : text) << i;
    }
}

TEST(Transcoding, TextCutInsideACharacterIsWaitedForForEverUnlessHardened) {
    ChildResult const child = RunInChild([] {
        itimerval const limit = {{0, 0}, {0, 100000}};
        setitimer(ITIMER_VIRTUAL, &limit, nullptr);
        std::printf("%ls", UnicodeString("ab\xe2\x82").wc_str());
    });
    EXPECT_EQ(std::to_string(child.status) + child.output,
              std::to_string(CommonAPI::internal::hardened ? 0 : -SIGVTALRM));
}

TEST(Transcoding, LongTextsConvertWhole) {
    for (std::size_t const length : {16383u, 16384u, 65534u, 65535u, 65536u, 200000u})
        for (wchar_t const character : {L'x', L'\U0001F600'}) {
            std::wstring const wide(length, character);
            std::string const narrow = UnicodeString(wide.c_str()).c_str();
            EXPECT_TRUE(UnicodeString(narrow).wc_str() == wide) << length;
        }
}

#include <CommonAPI/encryption_api.h>
#include <CommonAPI/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "support/child_process.h"

// The facade never frees a cipher.
extern "C" char const* __lsan_default_suppressions() {
    return "leak:EncryptionAPI::initializeAPI\n";
}

namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

ByteArray FromHex(std::string const& hex) {
    ByteArray data;
    data.loadASCIIHex(hex);
    return data;
}

std::string ToHex(ByteArray data) {
    std::string hex;
    data.getASCIIHex(hex);
    return hex;
}

EncryptionAPI Initialized(int mode, std::string const& key = "k") {
    EncryptionAPI api;
    ByteArray bytes;
    bytes = key;
    api.initializeAPI(bytes, mode);
    return api;
}

std::string EncryptedText(EncryptionAPI const& api, std::string const& text = "setting") {
    std::string out = "untouched";
    EXPECT_TRUE(api.encryptString(text, out));
    return out;
}

std::string EncryptedBy(Blowfish&& cipher, std::string const& text) {
    ByteArray data;
    data = text;
    EXPECT_TRUE(cipher.encryptData(data));
    return ToHex(data);
}

TEST(EncryptionAPI, PassesDataThroughInModesWithoutCipher) {
    for (int mode : {2, 7, -1}) {
        EncryptionAPI const api = mode == 2 ? EncryptionAPI() : Initialized(mode);
        ByteArray out("old");
        EXPECT_TRUE(api.encryptData("abc", out));
        EXPECT_EQ(ToHex(out), "616263");
        EXPECT_TRUE(api.decryptData("de", out));
        EXPECT_EQ(ToHex(out), "6465");
        std::string text = "old";
        EXPECT_TRUE(api.encryptString("abc", text));
        EXPECT_EQ(text, mode == 2 ? "abc" : "old");
        EXPECT_TRUE(api.decryptString("not hexadecimal", text));
        EXPECT_EQ(text, mode == 2 ? "not hexadecimal" : "old");
    }
}

TEST(EncryptionAPI, KeysTheCipherByMode) {
    // What mode 4 decrypts a key of "secret" and one of ten zero bytes to.
    auto const opened = [](std::string key) {
        Blowfish builtIn;
        builtIn.setPassword("Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R");
        key.resize((key.size() + 7) / 8 * 8);
        ByteArray data;
        data = key;
        EXPECT_TRUE(builtIn.decryptData(data));
        return std::string(data.c_str());
    };
    std::string const zeros(10, '\0');
    std::string sealed;  // "direct\0\0" under the built-in passphrase
    {
        EncryptionAPI const builtIn = Initialized(3, "Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R");
        ByteArray data = FromHex(EncryptedText(builtIn, "direct"));
        sealed.assign(data.c_str(), 8);
    }
    struct {
        int mode;
        std::string key;
        std::string password;
    } const rows[] = {{3, "direct", "direct"},
                      {3, std::string("cut\0off", 7), "cut"},
                      {3, "", ""},
                      {4, sealed, "direct"},
                      {4, "secret", opened("secret")},
                      {4, zeros, opened(zeros)},
                      {4, "", ""}};
    for (auto const& row : rows) {
        Blowfish cipher;
        EXPECT_EQ(cipher.setPassword(row.password.c_str()), !row.password.empty());
        EXPECT_EQ(EncryptedText(Initialized(row.mode, row.key), "settings"),
                  EncryptedBy(std::move(cipher), "settings"))
            << "mode " << row.mode << ", key " << row.key;
    }
}

TEST(EncryptionAPI, PadsDataAndLeavesThePadding) {
    EncryptionAPI const api = Initialized(3);
    ByteArray encrypted("old"), decrypted("old");
    EXPECT_TRUE(api.encryptData("123456789", encrypted));
    EXPECT_EQ(encrypted.size(), 16);
    EXPECT_TRUE(api.decryptData(encrypted, decrypted));
    EXPECT_EQ(ToHex(decrypted), "31323334353637383900000000000000");
    EXPECT_FALSE(api.decryptData("123456789", decrypted));
    EXPECT_TRUE(decrypted.empty());
    EXPECT_TRUE(api.encryptData("", encrypted));
    EXPECT_TRUE(api.decryptData("", decrypted));
    EXPECT_TRUE(encrypted.empty() && decrypted.empty());
}

TEST(EncryptionAPI, EmptiesABufferThatIsBothInputAndOutput) {
    EncryptionAPI const api = Initialized(3);
    ByteArray data("12345678");
    EXPECT_TRUE(api.encryptData(data, data));
    EXPECT_TRUE(data.empty());
    std::string text = "setting";
    EXPECT_TRUE(api.encryptString(text, text));
    EXPECT_TRUE(api.decryptString(text, text));
    EXPECT_EQ(text, "setting");
}

TEST(EncryptionAPI, DecryptsTextUpToAZeroCharacter) {
    EncryptionAPI const api = Initialized(3);
    std::string const encrypted = EncryptedText(api, "five5");
    std::string lower = encrypted;
    for (char& digit : lower)
        digit = static_cast<char>(std::tolower(digit));
    struct {
        std::string in;
        bool succeeds;
        std::string out;
    } const rows[] = {
        {encrypted, true, "five5"},
        {lower, true, "five5"},
        {EncryptedText(api, std::string("ab\0cd", 5)), true, "ab"},
        {EncryptedText(api, "exactly8"), true, "exactly8"},
        {"", true, ""},
        {encrypted.substr(0, 12), false, ""},
        {encrypted.substr(0, 8), false, "untouched"},
        {encrypted + encrypted.substr(0, 8), false, "untouched"},
        {encrypted.substr(0, 14) + "zz", false, "untouched"},
        {encrypted + "zz345678", true, "five5"},
        {"zz345678", true, ""},
    };
    for (auto const& row : rows) {
        std::string out = "untouched";
        EXPECT_EQ(api.decryptString(row.in, out), row.succeeds) << row.in;
        EXPECT_EQ(out, row.out) << row.in;
    }
    EXPECT_EQ(EncryptedText(api, ""), "");
}

TEST(EncryptionAPI, LogsAFailedDecryptionOfTextButNotABadTextLength) {
    TemporaryFolder const folder;
    std::string const path = folder.file("log");
    RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger(path, &settings, nullptr, false);
        EncryptionAPI const api = Initialized(3);
        std::string out;
        api.decryptString("00000000000000000000", out);
        LogMessage(4, "test", "next");
        api.decryptString("000000000000000000000000", out);
    });
    EXPECT_THAT(ReadFile(path),
                testing::ContainsRegex(
                    "---\n[0-9:]+ - test:  next\n[0-9:]+ - ERROR/Blowfish::decryptData\\(\\):  "));
}

TEST(EncryptionAPI, AppendsEncryptedItemsAndReplacesDecryptedOnes) {
    EncryptionAPI const api = Initialized(3);
    std::vector<ByteArray> encrypted = {"old"};
    EXPECT_TRUE(api.encryptDataList({"first", "second", ""}, encrypted));
    ASSERT_EQ(encrypted.size(), 4u);
    encrypted.erase(encrypted.begin());
    std::vector<ByteArray> decrypted = {"a", "b", "c", "d", "e"};
    EXPECT_TRUE(api.decryptDataList(encrypted, decrypted));
    EXPECT_THAT(decrypted, ElementsAre(testing::ResultOf(ToHex, "6669727374000000"),
                                       testing::ResultOf(ToHex, "7365636F6E640000"),
                                       testing::ResultOf(ToHex, "")));
    decrypted = {"a"};
    EXPECT_FALSE(api.decryptDataList({encrypted[0], "odd", encrypted[1]}, decrypted));
    EXPECT_THAT(decrypted, ElementsAre(testing::ResultOf(ToHex, "6669727374000000"),
                                       testing::ResultOf(ToHex, ""), testing::ResultOf(ToHex, "")));
}

TEST(EncryptionAPI, EncryptsInDecryptStringListToo) {
    EncryptionAPI const api = Initialized(3);
    Texts out = {"old"};
    EXPECT_TRUE(api.encryptStringList({"abc", ""}, out));
    EXPECT_TRUE(api.decryptStringList({"abc"}, out));
    std::string const abc = EncryptedText(api, "abc");
    EXPECT_THAT(out, ElementsAre("old", abc, "", abc));
}

TEST(EncryptionAPI, ServesSeveralThreadsAtOnce) {
    EncryptionAPI const api = Initialized(3);
    ByteArray const plain(std::string(1500, 'p').c_str());
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&api, &plain, text = std::to_string(i) + " of four"] {
            for (int round = 0; round < 50; ++round) {
                std::string out;
                EXPECT_TRUE(api.decryptString(EncryptedText(api, text), out));
                EXPECT_EQ(out, text);
                ByteArray encrypted, decrypted;
                EXPECT_TRUE(api.encryptData(plain, encrypted));
                EXPECT_TRUE(api.decryptData(encrypted, decrypted));
                EXPECT_STREQ(decrypted.c_str(), std::string(1500, 'p').c_str());
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace

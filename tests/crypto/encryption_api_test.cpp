#include <CommonAPI/encryption_api.h>

#include <thread>

#include "support/child_process.h"

using namespace std::string_literals;
using Api = EncryptionAPI;

static Api Initialized(int mode, std::string const& key = "k") {
    Api api;
    ByteArray bytes;
    api.initializeAPI(bytes = key, mode);
    return api;
}

/// What a call makes of an output that held "old", after "no " if the call fails.
template <class Value>
static std::string Call(Api const& api, bool (Api::*call)(Value const&, Value&) const,
                        std::string const& in) {
    Value value, out("old");
    std::string const result = (api.*call)(value = in, out) ? "" : "no ";
    return result + std::string(out.c_str(), static_cast<std::size_t>(out.size()));
}

static auto const encryptText = &Api::encryptString, decryptText = &Api::decryptString;
static auto const encryptData = &Api::encryptData, decryptData = &Api::decryptData;

// What is encrypted here was encrypted by OpenSSL too.
TEST(EncryptionAPI, KeysTheCipherByMode) {
    using Row = std::tuple<int, std::string, char const*>;
    for (auto const& [mode, key, encrypted] :
         {Row{3, "direct", "66BD83ED48588A5A"}, Row{3, "cut\0off"s, "3CB916A3BCA57B13"},
          Row{3, "", "D64C38BE0CDB1406"}, Row{4, "", "D64C38BE0CDB1406"},
          Row{4, "h\3#\x14;\xCF:D", "66BD83ED48588A5A"}, Row{4, "secret", "6449C07DB80D0C83"},
          Row{4, "ten\0bytes!"s, "BA9C86FBA435DA78"}})
        EXPECT_EQ(Call(Initialized(mode, key), encryptText, "settings"), encrypted) << mode << key;
}

TEST(EncryptionAPI, TransformsDataAndTexts) {
    Api const cipher = Initialized(3), other = Initialized(7), none;
    Api broken;
    *reinterpret_cast<int*>(&broken) = 3;  // the mode, but no cipher
    for (auto const call : {encryptData, decryptData})
        EXPECT_EQ(Call(none, call, "abc") + Call(other, call, "def") + Call(broken, call, ""),
                  "abcdef");
    for (auto const call : {encryptText, decryptText})
        EXPECT_EQ(Call(none, call, "abc") + Call(other, call, "def") + Call(cipher, call, "") +
                      Call(broken, call, "") + Call(broken, call, "0123456789ABCDEF"),
                  "abcoldno old");
    std::string const sealed = "\x48\x47\x51\x94\x0F\xCC\x5E\xCA\x1C\xBA\x26\x7A\x3C\x43\xB3\xBE";
    EXPECT_EQ(Call(cipher, encryptData, "123456789"), sealed);
    EXPECT_EQ(Call(cipher, decryptData, sealed), "123456789\0\0\0\0\0\0\0"s);
    EXPECT_EQ(Call(cipher, decryptData, "123456789"), "no ");
    EXPECT_EQ(Call(broken, encryptData, "abc"), "no abc\0\0\0\0\0"s);
    EXPECT_EQ(Call(cipher, encryptText, "ab\0cd"s), "3E7B4F9A601E6AFC");
    std::string const five = "CF89ADCD2310A833";
    using Row = std::pair<std::string, char const*>;
    for (auto const& [in, out] :
         {Row{five, "five5"}, Row{"cf89adcd2310a833", "five5"}, Row{"3E7B4F9A601E6AFC", "ab"},
          Row{"03AC05394F5EF651", "exactly8"}, Row{five + "zz345678", "five5"}, Row{"zz345678", ""},
          Row{five.substr(4), "no "}, Row{five.substr(8), "no old"},
          Row{five.substr(2) + "zz", "no old"}, Row{five + five.substr(8), "no old"}})
        EXPECT_EQ(Call(cipher, decryptText, in), out) << in;
    EXPECT_EQ(RunLogged([] { Call(Initialized(3), decryptText, "0123456789"); }).log, closingLine);
    ByteArray data("12345678");
    std::string text = "setting";
    EXPECT_TRUE(cipher.encryptData(data, data) && data.empty());
    EXPECT_TRUE(cipher.encryptString(text, text) && cipher.decryptString(text, text));
    EXPECT_EQ(text, "setting");
}

TEST(EncryptionAPI, AppendsEncryptedItemsAndReplacesDecryptedData) {
    Api const api = Initialized(3);
    std::vector<ByteArray> encrypted = {"old"}, data(5, "old");
    EXPECT_TRUE(api.encryptDataList({"first", "second"}, encrypted));
    encrypted.erase(encrypted.begin());
    EXPECT_TRUE(api.decryptDataList(encrypted, data));
    EXPECT_FALSE(api.decryptDataList({encrypted[1], "odd"}, data));
    ASSERT_EQ(data.size(), 2u);
    EXPECT_EQ(*data[0] + "|"s + *data[1], "second|second");
    std::vector<std::string> texts = {"old"};
    EXPECT_TRUE(api.encryptStringList({"abc", ""}, texts) && api.decryptStringList({"abc"}, texts));
    EXPECT_EQ(texts, (std::vector{"old"s, "AD33BAA16389AEEA"s, ""s, "AD33BAA16389AEEA"s}));
}

TEST(EncryptionAPI, ServesSeveralThreadsAtOnce) {
    Api const api = Initialized(3);
    std::vector<std::jthread> threads;
    for (char const letter : {'a', 'b', 'c', 'd'})
        threads.emplace_back([&api, in = std::string(1600, letter)] {
            for (int round = 0; round < 50; ++round) {
                EXPECT_EQ(Call(api, decryptText, Call(api, encryptText, in)), in);
                EXPECT_EQ(Call(api, decryptData, Call(api, encryptData, in)), in);
            }
        });
}

#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>

#include <future>

using namespace std::string_literals;

// All rules: the model under fuzz/.

static EncryptionAPI Initialized(int mode, std::string const& key) {
    EncryptionAPI api;
    ByteArray bytes;
    bytes = key;
    api.initializeAPI(bytes, mode);
    return api;
}

TEST(EncryptionAPI, KeysTheCipherByMode) {
    struct {
        char const* what;
        int mode;
        std::string key;
        char const* encrypted;  // by OpenSSL too
    } const rows[] = {{"direct", 3, "direct", "66BD83ED48588A5A"},
                      {"up to a zero", 3, "cut\0off"s, "3CB916A3BCA57B13"},
                      {"empty", 3, "", "D64C38BE0CDB1406"},
                      {"sealed", 4, "h\3#\x14;\xCF:D", "66BD83ED48588A5A"},
                      {"sealed and padded", 4, "ten\0bytes!"s, "BA9C86FBA435DA78"}};
    for (auto const& row : rows) {
        std::string text;
        Initialized(row.mode, row.key).encryptString("settings", text);
        EXPECT_EQ(text, row.encrypted) << row.what;
    }
}

TEST(EncryptionAPI, ServesSeveralThreadsAtOnce) {
    EncryptionAPI const api = Initialized(3, "k");
    std::vector<std::future<void>> threads;
    for (char const letter : {'a', 'b', 'c', 'd'})
        threads.push_back(std::async(std::launch::async, [&api, in = std::string(1600, letter)] {
            for (int round = 0; round < 50; ++round) {
                std::string encrypted;
                std::string decrypted;
                api.encryptString(in, encrypted);
                api.decryptString(encrypted, decrypted);
                EXPECT_EQ(decrypted, in);
            }
        }));
}

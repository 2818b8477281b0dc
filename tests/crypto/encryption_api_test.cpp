#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>

#include <future>

// All rules: the model under fuzz/.

TEST(EncryptionAPI, ASealedKeyIsOpenedWithTheBuiltInPassphrase) {
    EncryptionAPI api;
    ByteArray sealed("h\3#\x14;\xCF:D");  // "direct"
    std::string text;
    api.initializeAPI(sealed, 4);
    api.encryptString("settings", text);
    EXPECT_EQ(text, "66BD83ED48588A5A") << "as OpenSSL has it too";
}

TEST(EncryptionAPI, ServesSeveralThreadsAtOnce) {
    EncryptionAPI api;
    ByteArray key("k");
    api.initializeAPI(key, 3);
    std::vector<std::future<void>> tasks;
    for (char const letter : {'a', 'b', 'c', 'd'})
        tasks.push_back(std::async(std::launch::async, [&api, in = std::string(1600, letter)] {
            std::string text;
            for (int round = 0; round < 50; ++round) {
                api.encryptString(in, text);
                api.decryptString(text, text);
                EXPECT_EQ(text, in);
            }
        }));
}

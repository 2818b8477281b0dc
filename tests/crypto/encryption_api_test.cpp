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
    auto const use = [&api](std::string const& in) {
        std::string text;
        for (int round = 0; round < 100; ++round) {
            api.encryptString(in, text);
            api.decryptString(text, text);
            EXPECT_EQ(text, in);
        }
    };
    auto const aside = std::async(std::launch::async, use, std::string(1600, 'a'));
    use(std::string(1600, 'b'));
}

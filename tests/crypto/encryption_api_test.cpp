#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>

#include <future>

// All rules: the model under fuzz/.

TEST(EncryptionAPI, ServesSeveralThreadsAtOnce) {
    EncryptionAPI api;
    ByteArray key("k");
    api.initializeAPI(key, 3);
    auto const use = [&api](std::string const& in) {
        std::string text;
        for (int round = 0; round < 2000; ++round) {
            api.encryptString(in, text);
            api.decryptString(text, text);
            EXPECT_EQ(text, in);
        }
    };
    auto const aside = std::async(std::launch::async, use, std::string(320, 'a'));
    use(std::string(320, 'b'));
}

#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>

// All rules: the model under fuzz/.

TEST(EncryptionAPI, ASealedKeyIsOpenedWithTheBuiltInPassphrase) {
    EncryptionAPI api;
    ByteArray sealed("h\3#\x14;\xCF:D");  // "direct"
    std::string text;
    api.initializeAPI(sealed, 4);
    api.encryptString("settings", text);
    EXPECT_EQ(text, "66BD83ED48588A5A") << "as OpenSSL has it too";
}

#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>

// All rules: the model under fuzz/.

TEST(EncryptionAPI, KeysTheCipherByMode) {
    struct {
        char const* what;
        int mode;
        char const* key;
        char const* text;
        char const* encrypted;
    } const rows[] = {
        // Eric Young's: https://www.schneier.com/code/vectors.txt
        {"published", 3, "\xF0\xE1\xD2\xC3\xB4\xA5\x96\x87\x78",
         "\xFE\xDC\xBA\x98\x76\x54\x32\x10", "15750E7A4F4EC577"},
        {"sealed", 4, "h\3#\x14;\xCF:D", "settings", "66BD83ED48588A5A"}};
    for (auto const& row : rows) {
        EncryptionAPI api;
        ByteArray key(row.key);
        std::string text;
        api.initializeAPI(key, row.mode);
        api.encryptString(row.text, text);
        EXPECT_EQ(text, row.encrypted) << row.what;
    }
}

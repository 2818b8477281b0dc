#include <CommonAPI/blowfish.h>

#include <iostream>

#include "support/child_process.h"

// Every kernel agrees with OpenSSL: the target `blowfish` under fuzz/.
TEST(Blowfish, AgreesWithThePublishedVectors) {
    std::ifstream file(TESTS "/crypto/data/blowfish_vectors.txt");
    std::string hexKey, plain, encrypted, digits;
    for (std::string line; std::getline(file, line);)
        if (std::istringstream(line) >> hexKey >> plain >> encrypted && hexKey != "#") {
            Blowfish cipher;
            ByteArray key, block;
            key.loadASCIIHex(hexKey), block.loadASCIIHex(plain);
            EXPECT_TRUE(cipher.setPassword(key.c_str()) && cipher.encryptData(block));
            block.getASCIIHex(digits);
            EXPECT_EQ(digits, encrypted) << line;
        }
    EXPECT_EQ(encrypted, "93142887EE3BE15C") << "the last one";
}

TEST(Blowfish, KeepsItsTablesWhenThereIsNoPassword) {
    Blowfish cipher;
    auto const encrypted = [&](ByteArray block = "12345678") {
        Blowfish::Word left = block.at(0), right = block.at(4);
        cipher.BF_En(&left, &right);
        EXPECT_TRUE(cipher.encryptData(block) && left == block.at(0) && right == block.at(4));
        cipher.BF_De(&left, &right);
        EXPECT_TRUE(left == 0x31323334 && right == 0x35363738);
        return std::string(block.c_str());
    };
    EXPECT_TRUE(cipher.setPassword("another") && cipher.setPassword("key"));
    std::string const keyed = encrypted();
    EXPECT_FALSE(cipher.setPassword("") || cipher.setPassword(nullptr));
    cipher.generateSubKeys("");
    EXPECT_EQ(encrypted(), keyed);
    cipher.generateSubKeys("key");
    EXPECT_NE(encrypted(), keyed) << "generateSubKeys must not reset";
    cipher.reset(), cipher.generateSubKeys("key");
    EXPECT_EQ(encrypted(), keyed);
}

TEST(Blowfish, LogsBadLengthsUnderTwoModulesAndLevelsOneOfThemMisspelled) {
    ChildResult const child = RunLogged([] {
        ByteArray data("1234567");
        std::cout << Blowfish().encryptData(data) << Blowfish().decryptData(data) << *data;
    });
    std::string const line =
        ":  Blowfish requires the input to be a multiple of 8 bytes (64 bits) to work.\n";
    EXPECT_EQ(child.output, "001234567");
    EXPECT_EQ(child.log,
              "FATAL/Encrptyion" + line + "ERROR/Blowfish::decryptData()" + line + closingLine);
}

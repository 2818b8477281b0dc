#define OPENSSL_SUPPRESS_DEPRECATED
#include <CommonAPI/blowfish.h>
#include <gtest/gtest.h>

#include <cstring>
#include <iostream>
#ifdef HAS_OPENSSL
#include <openssl/blowfish.h>
#endif

#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_key_schedule.h"
#include "support/logged_child.h"
#include "types/byte_array_access.h"

using namespace CommonAPI::internal;

namespace {

using Bytes = std::vector<unsigned char>;

Bytes FromHex(std::string const& hex) {
    ByteArray data;
    data.loadASCIIHex(hex);
    return ByteArrayAccess::bytes(data);
}

void ExpectOfEveryKernel(Bytes const& key, Bytes const& plain, Bytes const& encrypted,
                         std::size_t offset, std::size_t blocks) {
    BlowfishSubkeys subkeys;
    BlowfishBoxes boxes;
    std::memcpy(subkeys, initialBlowfishSubkeys, sizeof subkeys);
    std::memcpy(boxes, initialBlowfishBoxes, sizeof boxes);
    ScheduleBlowfishKey(reinterpret_cast<char const*>(key.data()), key.size(), subkeys, boxes);
    for (BlowfishKernel const& kernel : BlowfishKernels())
        if (kernel.supported()) {
            Bytes data = plain;
            kernel.encrypt(subkeys, boxes, data.data() + offset, blocks);
            EXPECT_EQ(data, encrypted) << kernel.name << ", " << blocks << " blocks";
            kernel.decrypt(subkeys, boxes, data.data() + offset, blocks);
            EXPECT_EQ(data, plain) << kernel.name << ", " << blocks << " blocks";
        }
}

TEST(Blowfish, AgreesWithThePublishedVectors) {
    std::ifstream file(BLOWFISH_VECTORS);
    std::string key, plain, encrypted;
    for (std::string line; std::getline(file, line);)
        if (std::istringstream(line) >> key >> plain >> encrypted && key != "#")
            ExpectOfEveryKernel(FromHex(key), FromHex(plain), FromHex(encrypted), 0, 1);
    EXPECT_EQ(encrypted, "05044B62FA52D080") << "the last one";
}

#ifdef HAS_OPENSSL
TEST(Blowfish, AgreesWithOpenSslAtEveryLengthAndAlignment) {
    Bytes noise(8192);
    for (unsigned char& byte : noise)
        byte = static_cast<unsigned char>(1 + std::rand() % 255);
    for (std::size_t blocks = 0; blocks <= 330; ++blocks) {
        Bytes const key(&noise[blocks], &noise[blocks + 1 + blocks % 80]);  // of which 72 count
        BF_KEY schedule;
        BF_set_key(&schedule, static_cast<int>(key.size()), key.data());
        Bytes const plain(&noise[0], &noise[9 * blocks + 65]);
        Bytes encrypted = plain;
        for (std::size_t i = blocks + 1; i < 9 * blocks + 1; i += 8)
            BF_ecb_encrypt(&encrypted[i], &encrypted[i], &schedule, BF_ENCRYPT);
        ExpectOfEveryKernel(key, plain, encrypted, blocks + 1, blocks);

        Blowfish cipher;
        EXPECT_TRUE(cipher.setPassword(std::string(key.begin(), key.end()).c_str()));
        BF_LONG words[] = {1, 2};
        BF_encrypt(words, &schedule);
        cipher.BF_De(&words[0], &words[1]);
        cipher.BF_En(&words[0], &words[1]);
        cipher.BF_De(&words[0], &words[1]);
        EXPECT_TRUE(words[0] == 1 && words[1] == 2) << key.size() << " bytes of key";
    }
}

#endif

TEST(Blowfish, KeepsItsTablesWhenThereIsNoPassword) {
    Blowfish cipher;
    auto const encrypted = [&](ByteArray data = "two plain blocks") {
        EXPECT_TRUE(cipher.encryptData(data));
        return ByteArrayAccess::bytes(data);
    };
    EXPECT_TRUE(cipher.setPassword("another") && cipher.setPassword("key"));
    Bytes const keyed = encrypted();
    EXPECT_FALSE(cipher.setPassword("") || cipher.setPassword(nullptr));
    cipher.generateSubKeys("");
    EXPECT_EQ(encrypted(), keyed);
    cipher.generateSubKeys("key");
    EXPECT_NE(encrypted(), keyed) << "generateSubKeys must not reset";
    cipher.reset();
    cipher.generateSubKeys("key");
    EXPECT_EQ(encrypted(), keyed);
}

TEST(Blowfish, LogsBadLengthsUnderTwoModulesAndLevelsOneOfThemMisspelled) {
    LoggedChild const child = RunLogged([] {
        Blowfish cipher;
        ByteArray data("1234567");
        std::cout << cipher.encryptData(data) << cipher.decryptData(data) << *data;
    });
    std::string const line =
        ":  Blowfish requires the input to be a multiple of 8 bytes (64 bits) to work.\n";
    EXPECT_EQ(child.output, "001234567");
    EXPECT_EQ(child.log, "FATAL/Encrptyion" + line + "ERROR/Blowfish::decryptData()" + line +
                             "Terminating logging facility\n");
}

}  // namespace

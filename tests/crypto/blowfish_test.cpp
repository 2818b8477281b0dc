#define OPENSSL_SUPPRESS_DEPRECATED
#include <CommonAPI/blowfish.h>
#include <CommonAPI/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/blowfish.h>

#include <cstring>
#include <iostream>
#include <random>
#include <sstream>

#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_key_schedule.h"
#include "support/child_process.h"
#include "types/byte_array_access.h"

using namespace CommonAPI::internal;

namespace {

using Bytes = std::vector<unsigned char>;

struct Tables {
    explicit Tables(Bytes const& key) {
        std::memcpy(subkeys, initialBlowfishSubkeys, sizeof subkeys);
        std::memcpy(boxes, initialBlowfishBoxes, sizeof boxes);
        ScheduleBlowfishKey(reinterpret_cast<char const*>(key.data()), key.size(), subkeys, boxes);
    }
    BlowfishSubkeys subkeys;
    BlowfishBoxes boxes;
};

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

std::string Encrypt(Blowfish& cipher) {
    ByteArray data = FromHex("0123456789ABCDEFFEDCBA98765432100123456789ABCDEF");
    EXPECT_TRUE(cipher.encryptData(data));
    return ToHex(data);
}

std::string EncryptUnder(std::string const& key) {
    Blowfish cipher;
    EXPECT_TRUE(cipher.setPassword(key.c_str()));
    return Encrypt(cipher);
}

class Kernel : public testing::TestWithParam<BlowfishKernel> {
    void SetUp() override {
        if (!GetParam().supported())
            GTEST_SKIP() << "not on this processor";
    }
};
INSTANTIATE_TEST_SUITE_P(Blowfish, Kernel, testing::ValuesIn(BlowfishKernels()),
                         [](auto const& kernel) { return kernel.param.name; });

TEST_P(Kernel, AgreesWithThePublishedVectors) {
    constexpr std::size_t blocks = 200;
    std::ifstream file(BLOWFISH_VECTORS);
    int vectors = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#')
            continue;
        SCOPED_TRACE(line);
        std::string key, plain, cipher, manyPlain, manyCipher;
        std::istringstream(line) >> key >> plain >> cipher;
        for (std::size_t i = 0; i < blocks; ++i) {
            manyPlain += plain;
            manyCipher += cipher;
        }
        ByteArray keyBytes = FromHex(key);
        Tables const tables(ByteArrayAccess::bytes(keyBytes));
        ByteArray data = FromHex(manyPlain);
        unsigned char* const bytes = ByteArrayAccess::bytes(data).data();
        GetParam().encrypt(tables.subkeys, tables.boxes, bytes, blocks);
        EXPECT_EQ(ToHex(data), manyCipher);
        GetParam().decrypt(tables.subkeys, tables.boxes, bytes, blocks);
        EXPECT_EQ(ToHex(data), manyPlain);
        ++vectors;
    }
    EXPECT_EQ(vectors, 34 + 24);
}

TEST_P(Kernel, AgreesWithOpenSslAtEveryLengthAndAlignment) {
    std::mt19937 random;
    auto const fill = [&](Bytes bytes) {
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random());
        return bytes;
    };
    for (std::size_t blocks = 0; blocks <= 330; ++blocks) {
        Bytes const key = fill(Bytes(1 + blocks % 72));
        BF_KEY schedule;
        BF_set_key(&schedule, static_cast<int>(key.size()), key.data());
        std::size_t const offset = 1 + blocks % 64;
        Bytes const plain = fill(Bytes(offset + 8 * blocks + 64));
        Bytes expected = plain;
        for (std::size_t i = 0; i < blocks; ++i)
            BF_ecb_encrypt(&expected[offset + 8 * i], &expected[offset + 8 * i], &schedule,
                           BF_ENCRYPT);
        Tables const tables(key);
        Bytes data = plain;
        GetParam().encrypt(tables.subkeys, tables.boxes, &data[offset], blocks);
        ASSERT_EQ(data, expected) << blocks << " blocks";
        GetParam().decrypt(tables.subkeys, tables.boxes, &data[offset], blocks);
        ASSERT_EQ(data, plain) << blocks << " blocks";
    }
}

TEST(Blowfish, TransformsWordsAsOpenSslDoes) {
    char const key[] = "\xff\x80k\x01";
    BF_KEY schedule;
    BF_set_key(&schedule, 4, reinterpret_cast<unsigned char const*>(key));
    Blowfish cipher;
    cipher.setPassword(key);
    BF_LONG expected[] = {0x01234567, 0x89ABCDEF};
    BF_encrypt(expected, &schedule);
    Blowfish::Word left = 0x01234567, right = 0x89ABCDEF;
    cipher.BF_En(&left, &right);
    EXPECT_THAT((std::vector{left, right}), testing::ElementsAreArray(expected));
    cipher.BF_De(&left, &right);
    EXPECT_THAT((std::vector{left, right}), testing::ElementsAre(0x01234567, 0x89ABCDEF));
}

TEST(Blowfish, RepeatsTheKeyAndReads72BytesOfIt) {
    std::string repeated;
    for (int i = 0; i < 36; ++i)
        repeated += "ab";
    EXPECT_EQ(EncryptUnder("ab"), EncryptUnder(repeated));
    EXPECT_EQ(EncryptUnder(repeated), EncryptUnder(repeated + "more"));
    EXPECT_NE(EncryptUnder(repeated), EncryptUnder(repeated.substr(0, 71) + "x"));
}

TEST(Blowfish, KeepsItsTablesWhenThereIsNoPassword) {
    Blowfish cipher;
    std::string const unkeyed = Encrypt(cipher);
    std::string const keyed = EncryptUnder("key");
    EXPECT_NE(unkeyed, keyed);
    EXPECT_TRUE(cipher.setPassword("another"));
    EXPECT_TRUE(cipher.setPassword("key"));
    EXPECT_FALSE(cipher.setPassword(""));
    EXPECT_FALSE(cipher.setPassword(nullptr));
    cipher.generateSubKeys("");
    EXPECT_EQ(Encrypt(cipher), keyed);
    cipher.generateSubKeys("key");
    EXPECT_NE(Encrypt(cipher), keyed) << "generateSubKeys must not reset";
    cipher.reset();
    EXPECT_EQ(Encrypt(cipher), unkeyed);
}

TEST(Blowfish, LogsBadLengthsUnderTwoModulesAndLevelsOneOfThemMisspelled) {
    TemporaryFolder const folder;
    std::string const path = folder.file("log");
    ChildResult const child = RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger(path, &settings, nullptr, false);
        Blowfish cipher;
        ByteArray data("1234567"), longer("123456789"), empty;
        bool const succeeded = cipher.encryptData(data) || cipher.decryptData(longer) ||
                               !cipher.encryptData(empty) || !cipher.decryptData(empty);
        std::cout << succeeded << *data << *longer << empty.size();
    });
    std::string const line =
        "Blowfish requires the input to be a multiple of 8 bytes \\(64 bits\\) to work.\n";
    EXPECT_EQ(child.output, "012345671234567890");
    EXPECT_THAT(ReadFile(path),
                testing::ContainsRegex("FATAL/Encrptyion:  " + line + "[0-9:]+ - " +
                                       "ERROR/Blowfish::decryptData\\(\\):  " + line));
}

}  // namespace

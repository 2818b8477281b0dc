#include <CommonAPI/blowfish.h>
#include <pthread.h>

#include <memory>

#include "../fuzz/blowfish_model.h"
#include "crypto/blowfish_kernel.h"
#include "support/child_process.h"

using namespace CommonAPI::internal;

// Every kernel at every length: the model `encryption_api` under fuzz/.

static std::string Encrypted(Blowfish& cipher, std::string const& hexadecimal) {
    ByteArray block;
    block.loadASCIIHex(hexadecimal);
    cipher.encryptData(block);
    std::string digits;
    block.getASCIIHex(digits);
    return digits;
}

// Of the test vectors that Eric Young compiled: https://www.schneier.com/code/vectors.txt
TEST(Blowfish, AgreesWithThePublishedVectors) {
    char const* const rows[][3] = {
        {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "FFFFFFFFFFFFFFFF", "51866FD5B85ECB8A"},
        {"\x01\x23\x45\x67\x89\xAB\xCD\xEF", "1111111111111111", "61F9C3802281B096"},
        {"\x01\x01\x01\x01\x01\x01\x01\x01", "0123456789ABCDEF", "FA34EC4847B268B2"},
        {"\xF0", "FEDCBA9876543210", "F9AD597C49DB005E"},
        {"\xF0\xE1\xD2\xC3\xB4\xA5\x96\x87\x78", "FEDCBA9876543210", "15750E7A4F4EC577"}};
    for (auto const& [key, plain, encrypted] : rows) {
        Blowfish cipher;
        cipher.setPassword(key);
        EXPECT_EQ(Encrypted(cipher, plain), encrypted);
    }
}

TEST(Blowfish, KeepsItsKeyWhenThereIsNoPassword) {
    Blowfish cipher;
    EXPECT_TRUE(cipher.setPassword("key"));
    std::string const keyed = Encrypted(cipher, "81F203E481F203E4");
    EXPECT_FALSE(cipher.setPassword(""));
    EXPECT_FALSE(cipher.setPassword(nullptr));
    cipher.generateSubKeys("");
    EXPECT_EQ(Encrypted(cipher, "81F203E481F203E4"), keyed);
    EXPECT_TRUE(cipher.setPassword("other") && cipher.setPassword("key"));
    EXPECT_EQ(Encrypted(cipher, "81F203E481F203E4"), keyed);
}

TEST(Blowfish, SchedulesAKeyOnTopOfTheOneInForce) {
    Blowfish cipher;
    std::string const withoutKey = Encrypted(cipher, "81F203E481F203E4");
    cipher.generateSubKeys("key");
    std::string const keyed = Encrypted(cipher, "81F203E481F203E4");
    cipher.generateSubKeys("key");
    EXPECT_NE(Encrypted(cipher, "81F203E481F203E4"), keyed);
    cipher.reset();
    EXPECT_EQ(Encrypted(cipher, "81F203E481F203E4"), withoutKey);
}

TEST(Blowfish, TransformsSingleBlocksAsItDoesBuffers) {
    Blowfish cipher;
    ByteArray block("\x81\xF2\x03\xE4 two");
    Blowfish::Word left = block.at(0);
    Blowfish::Word right = block.at(4);
    cipher.encryptData(block);
    cipher.BF_En(&left, &right);
    EXPECT_EQ(left, block.at(0));
    EXPECT_EQ(right, block.at(4));
    cipher.BF_De(&left, &right);
    EXPECT_EQ(left, 0x81F203E4);
    EXPECT_EQ(right, 0x2074776F);
}

TEST(Blowfish, LogsBadLengthsUnderTwoModulesAndLevelsOneOfThemMisspelled) {
    ChildResult const child = RunLogged([] {
        ByteArray data("1234567");
        std::printf("%d ", Blowfish().encryptData(data));
        std::printf("%d %s", Blowfish().decryptData(data), *data);
    });
    std::string const line =
        ":  Blowfish requires the input to be a multiple of 8 bytes (64 bits) to work.\n";
    EXPECT_EQ(child.output, "0 0 1234567");
    EXPECT_EQ(child.log,
              "FATAL/Encrptyion" + line + "ERROR/Blowfish::decryptData()" + line + closingLine);
}

TEST(BlowfishKernels, AreTakenWhereTheProcessorHasTheirInstructions) {
    std::ifstream file("/proc/cpuinfo");
    std::string const features((std::istreambuf_iterator<char>(file)), {});
    bool chosen = false;
    for (BlowfishKernel const& kernel : BlowfishKernels()) {
        std::string const feature = kernel.name;
        bool const there = feature == "portable" || features.find(' ' + feature) < features.size();
        EXPECT_EQ(kernel.supported(), there) << feature;
        EXPECT_EQ(&kernel == &ChosenBlowfishKernel(), there && !chosen) << feature;
        chosen = chosen || there;
    }
}

static BlowfishModel const model("key");
static BlowfishTransform* transform;

/// What a call leaves on its stack.
static std::string StackAfterTransform() {
    std::string stack(1 << 18, '\0');
    void* begin = stack.data();
    std::size_t size = stack.size();
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, std::align(4096, size - 4096, begin, size), 1 << 17);
    auto const body = [](void*) -> void* {
        unsigned char data[8 * 129] = {};
        transform(model.subkeys, model.boxes, data, 129);
        return nullptr;
    };
    pthread_t thread;
    EXPECT_EQ(pthread_create(&thread, &attributes, body, nullptr), 0);
    pthread_join(thread, nullptr);
    return stack;
}

/// The lowest, or a higher, byte of each of the first words.
static std::string Plane(std::uint32_t const (&box)[256], int number) {
    std::string bytes;
    for (int i = 0; i < 16; ++i)
        bytes += static_cast<char>(box[i] >> 8 * number);
    return bytes;
}

TEST(BlowfishKernels, LeaveNoKeyMaterialBehind) {
#ifndef __OPTIMIZE__
    GTEST_SKIP() << "what is not optimised has every variable on the stack";
#endif
    for (BlowfishKernel const& kernel : BlowfishKernels())
        for (BlowfishTransform* const direction : {kernel.encrypt, kernel.decrypt}) {
            if (!kernel.supported())
                continue;
            transform = direction;
            std::string const stack = StackAfterTransform();
            for (auto const& box : model.boxes) {
                std::string const words(reinterpret_cast<char const*>(box), 16);
                EXPECT_EQ(stack.find(words), std::string::npos) << kernel.name;
                for (int number = 0; number < 4; ++number)
                    EXPECT_EQ(stack.find(Plane(box, number)), std::string::npos) << kernel.name;
            }
        }
}

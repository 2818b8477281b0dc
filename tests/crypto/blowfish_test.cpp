#include <CommonAPI/blowfish.h>
#include <pthread.h>

#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_key_schedule.h"
#include "support/child_process.h"

using namespace CommonAPI::internal;

// Every kernel at every length: the model `encryption_api` under fuzz/.

TEST(Blowfish, AgreesWithThePublishedVectors) {
    std::ifstream file(TESTS "/crypto/data/blowfish_vectors.txt");
    std::string hexKey, plain, encrypted, digits;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        if (!(fields >> hexKey >> plain >> encrypted) || hexKey == "#")
            continue;
        Blowfish cipher;
        ByteArray key, block;
        key.loadASCIIHex(hexKey);
        block.loadASCIIHex(plain);
        cipher.setPassword(key.c_str());
        EXPECT_TRUE(cipher.encryptData(block));
        block.getASCIIHex(digits);
        EXPECT_EQ(digits, encrypted) << line;
    }
    EXPECT_EQ(encrypted, "93142887EE3BE15C") << "the last one";
}

class KeyedBlowfish : public testing::Test {
protected:
    std::string encrypted() {
        ByteArray block("12345678");
        cipher.encryptData(block);
        return block.c_str();
    }

    void SetUp() override { cipher.setPassword("key"); }

    Blowfish cipher;
    std::string const withoutKey = encrypted();
};

TEST_F(KeyedBlowfish, KeepsItsKeyWhenThereIsNoPassword) {
    std::string const keyed = encrypted();
    EXPECT_FALSE(cipher.setPassword(""));
    EXPECT_FALSE(cipher.setPassword(nullptr));
    cipher.generateSubKeys("");
    EXPECT_EQ(encrypted(), keyed);
}

TEST_F(KeyedBlowfish, SchedulesAKeyOnTopOfTheOneInForce) {
    std::string const keyed = encrypted();
    cipher.generateSubKeys("key");
    EXPECT_NE(encrypted(), keyed);
    cipher.reset();
    EXPECT_EQ(encrypted(), withoutKey);
    cipher.generateSubKeys("key");
    EXPECT_EQ(encrypted(), keyed);
}

TEST_F(KeyedBlowfish, TransformsSingleBlocksAsItDoesBuffers) {
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

struct Schedule {
    Schedule() {
        std::memcpy(subkeys, initialBlowfishSubkeys, sizeof subkeys);
        std::memcpy(boxes, initialBlowfishBoxes, sizeof boxes);
        ScheduleBlowfishKey("key", 3, subkeys, boxes);
    }

    BlowfishSubkeys subkeys;
    BlowfishBoxes boxes;
    BlowfishTransform* transform = nullptr;
};

static void* RunTransform(void* argument) {
    auto const& schedule = *static_cast<Schedule*>(argument);
    unsigned char data[8 * 129] = {};
    schedule.transform(schedule.subkeys, schedule.boxes, data, 129);
    return nullptr;
}

/// What a call leaves on its stack.
static std::string StackAfter(Schedule& schedule) {
    std::size_t const size = 1 << 18;
    std::string stack(size + 4096, '\0');
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    std::size_t const misaligned = reinterpret_cast<std::uintptr_t>(stack.data()) % 4096;
    pthread_attr_setstack(&attributes, stack.data() + 4096 - misaligned, size);
    pthread_t thread;
    EXPECT_EQ(pthread_create(&thread, &attributes, RunTransform, &schedule), 0);
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
    Schedule schedule;
    for (BlowfishKernel const& kernel : BlowfishKernels())
        for (BlowfishTransform* const transform : {kernel.encrypt, kernel.decrypt}) {
            if (!kernel.supported())
                continue;
            schedule.transform = transform;
            std::string const stack = StackAfter(schedule);
            for (auto const& box : schedule.boxes) {
                std::string const words(reinterpret_cast<char const*>(box), 16);
                EXPECT_EQ(stack.find(words), std::string::npos) << kernel.name;
                for (int number = 0; number < 4; ++number)
                    EXPECT_EQ(stack.find(Plane(box, number)), std::string::npos) << kernel.name;
            }
        }
}

#include <CommonAPI/blowfish.h>
#include <ucontext.h>

#include "crypto/blowfish_kernel.h"
#include "support/child_process.h"

using namespace CommonAPI::internal;

// What they compute: the model `encryption_api` under fuzz/.

static std::uint64_t Encrypted(Blowfish& cipher) {
    Blowfish::Word block[] = {0xFEDCBA98, 0x76543210};
    cipher.BF_En(&block[0], &block[1]);
    return static_cast<std::uint64_t>(block[0]) << 32 | block[1];
}

// One of the test vectors that Eric Young compiled: https://www.schneier.com/code/vectors.txt
TEST(Blowfish, KeysByTheBytesOfThePasswordUpToThe72nd) {
    Blowfish cipher;
    EXPECT_TRUE(cipher.setPassword("\xF0\xE1\xD2\xC3\xB4\xA5\x96\x87\x78"));
    EXPECT_FALSE(cipher.setPassword(""));
    EXPECT_FALSE(cipher.setPassword(nullptr));
    cipher.generateSubKeys("");
    EXPECT_EQ(Encrypted(cipher), 0x15750E7A4F4EC577u);
    cipher.setPassword((std::string(72, 'k') + "rest").c_str());
    std::uint64_t const keyed = Encrypted(cipher);
    cipher.reset();
    cipher.generateSubKeys("kk");
    EXPECT_EQ(Encrypted(cipher), keyed);
    cipher.generateSubKeys("kk");
    EXPECT_NE(Encrypted(cipher), keyed) << "scheduled on top of the key in force";
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
    std::string const features = ContentOf("/proc/cpuinfo");
    bool chosen = false;
    for (BlowfishKernel const& kernel : BlowfishKernels()) {
        std::string const feature = kernel.name;
        bool const there = feature == "portable" || features.find(' ' + feature) < features.size();
        EXPECT_EQ(kernel.supported(), there) << feature;
        EXPECT_EQ(&kernel == &ChosenBlowfishKernel(), there && !chosen) << feature;
        chosen = chosen || there;
    }
}

static BlowfishTransform* transform;
static BlowfishBoxes boxes;

/// What a call leaves on its stack.
static std::string StackAfterTransform() {
    std::string stack(1 << 17, '\0');
    ucontext_t here;
    ucontext_t there;
    getcontext(&there);
    there.uc_stack = {stack.data(), 0, stack.size()};
    there.uc_link = &here;
    auto const body = [] {
        unsigned char data[8 * 129] = {};
        transform(initialBlowfishSubkeys, boxes, data, 129);
    };
    makecontext(&there, body, 0);
    swapcontext(&here, &there);
    return stack;
}

TEST(BlowfishKernels, LeaveNoKeyMaterialBehind) {
#ifndef NDEBUG
    GTEST_SKIP() << "what is not optimised has every variable on the stack";
#endif
    std::map<std::size_t, std::string> traces;  // by how many bytes of a word stay together
    for (int i = 0; i < 16; ++i) {
        auto const byte = static_cast<unsigned char>(i * i + 1);
        for (std::size_t const size : {1u, 2u, 4u})
            traces[size].append(size, static_cast<char>(byte));
        for (auto& box : boxes)
            box[i] = byte * 0x01010101u;
    }
    for (BlowfishKernel const& kernel : BlowfishKernels())
        for (BlowfishTransform* const direction : {kernel.encrypt, kernel.decrypt}) {
            if (!kernel.supported())
                continue;
            transform = direction;
            std::string const stack = StackAfterTransform();
            for (auto const& [size, trace] : traces)
                EXPECT_EQ(stack.find(trace), std::string::npos)
                    << kernel.name << " leaves " << size << " bytes of each word";
        }
}

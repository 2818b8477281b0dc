#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

// Against the finished library: its optimiser must not have dropped what nobody reads.

// The facade never frees a cipher.
extern "C" char const* __lsan_default_suppressions() {
    return "leak:EncryptionAPI::initializeAPI\n";
}

namespace {

constexpr char password[] = "a password of some length";
int freedWithPassword = 0;

}  // namespace

// Not inlined, or gcc takes the pair for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    if (memory != nullptr &&
        memmem(memory, malloc_usable_size(memory), password, std::size(password) - 1) != nullptr)
        ++freedWithPassword;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

TEST(Wiping, DestructionReturnsToTheInitialTables) {
    alignas(Blowfish) unsigned char used[sizeof(Blowfish)];
    alignas(Blowfish) unsigned char fresh[sizeof(Blowfish)];
    Blowfish* const cipher = new (used) Blowfish;
    Blowfish* const unkeyed = new (fresh) Blowfish;
    std::size_t const tables = sizeof(std::string);
    EXPECT_TRUE(cipher->setPassword(password));
    EXPECT_NE(std::memcmp(used + tables, fresh + tables, sizeof used - tables), 0);
    cipher->~Blowfish();
    EXPECT_EQ(std::memcmp(used + tables, fresh + tables, sizeof used - tables), 0);
    unkeyed->~Blowfish();
}

TEST(Wiping, NoFreedBufferHoldsAnOpenedPassword) {
    EncryptionAPI api;
    ByteArray builtIn("Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R");
    api.initializeAPI(builtIn, 3);
    ByteArray sealed;
    ASSERT_TRUE(api.encryptData(password, sealed));
    freedWithPassword = 0;
    api.initializeAPI(sealed, 4);
    EXPECT_EQ(freedWithPassword, 0);
    { std::string const copy = password; }
    EXPECT_EQ(freedWithPassword, 1) << "the check itself";
}

}  // namespace

#include <CommonAPI/encryption_api.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>

// Of the finished library: its optimiser must not have dropped what nobody reads.
char const password[] = "a password of some length";
int freedWithPassword = 0;

[[gnu::noinline]] void* operator new(std::size_t size) {  // inlined, gcc sees a mismatch
    return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    if (memory && memmem(memory, malloc_usable_size(memory), password, sizeof password - 1))
        ++freedWithPassword;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

TEST(Wiping, LeavesNeitherKeyedTablesNorAnOpenedPassword) {
    alignas(Blowfish) char used[sizeof(Blowfish)];
    Blowfish const unkeyed;
    Blowfish* const cipher = new (used) Blowfish;
    cipher->setPassword(password);
    cipher->~Blowfish();
    char const* const initial = reinterpret_cast<char const*>(&unkeyed) + sizeof(std::string);
    EXPECT_TRUE(std::equal(used + sizeof(std::string), std::end(used), initial));

    EncryptionAPI api;
    ByteArray builtIn("Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R"), sealed;
    api.initializeAPI(builtIn, 3);
    api.encryptData(password, sealed);
    freedWithPassword = 0;
    api.initializeAPI(sealed, 4);
    EXPECT_EQ(freedWithPassword, 0);
    api.encryptData(password, sealed);  // whose buffer is not wiped
    EXPECT_EQ(freedWithPassword, 1) << "the check itself";
}

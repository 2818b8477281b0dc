#include <CommonAPI/encryption_api.h>

#include <iostream>

int main() {
    ByteArray key("a password");
    EncryptionAPI encryption;
    encryption.initializeAPI(key, 3);

    std::string stored;
    std::string value;
    encryption.encryptString("secret", stored);
    encryption.decryptString(stored, value);
    std::cout << stored << " stands for " << value << "\n";
}

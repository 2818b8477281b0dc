#include <CommonAPI/encryption_api.h>

#include <memory>

#include "crypto/blowfish_kernel.h"
#include "crypto/built_in_passphrase.h"
#include "fuzz/target.h"

using Data = std::vector<ByteArray>;
using Texts = std::vector<std::string>;

static std::string Content(ByteArray array) {
    return std::string(*array, array.length());
}

static std::string Padded(std::string data) {
    data.resize((data.size() + 7) / 8 * 8);
    return data;
}

/// Block by block, which the published vectors cover.
static std::string Transformed(Blowfish& cipher, std::string const& data, bool encrypt) {
    ByteArray blocks;
    blocks = data;
    for (int at = 0; at + 8 <= blocks.length(); at += 8) {
        Blowfish::Word left = blocks.at(at);
        Blowfish::Word right = blocks.at(at + 4);
        if (encrypt)
            cipher.BF_En(&left, &right);
        else
            cipher.BF_De(&left, &right);
        blocks.assign(at, left);
        blocks.assign(at + 4, right);
    }
    return Content(blocks);
}

/// The buffers have a model of their own.
struct EncryptionAPIModel {
    int mode = 2;
    std::shared_ptr<Blowfish> cipher;

    bool encrypts() const { return mode == 3 || mode == 4; }

    void initializeAPI(ByteArray const& key, int newMode) {
        std::string password = Content(key);
        mode = newMode;
        if (mode == 4) {
            Blowfish opener;
            opener.setPassword(CommonAPI::internal::BuiltInPassphrase().data());
            password = Transformed(opener, Padded(password), false);
        }
        if (encrypts())  // copies keep the other one
            cipher = std::make_shared<Blowfish>();
        if (encrypts())
            cipher->setPassword(password.c_str());
    }

    bool encryptData(ByteArray const& in, ByteArray& out) const {
        std::string const data = &in == &out ? "" : Content(in);
        out = encrypts() ? Transformed(*cipher, Padded(data), true) : data;
        return true;
    }
    bool decryptData(ByteArray const& in, ByteArray& out) const {
        std::string const data = &in == &out ? "" : Content(in);
        bool const fails = encrypts() && data.size() % 8 != 0;
        out = fails ? "" : encrypts() ? Transformed(*cipher, data, false) : data;
        return !fails;
    }
    bool encryptDataList(Data const in, Data& out) const {
        for (ByteArray const& item : in)
            encryptData(item, out.emplace_back());
        return true;
    }
    bool decryptDataList(Data const in, Data& out) const {
        out.resize(in.size());
        for (std::size_t i = 0; i < in.size(); ++i) {
            ByteArray decrypted;
            if (!decryptData(in[i], decrypted))
                return false;
            out[i] = decrypted;
        }
        return true;
    }

    bool encryptString(std::string const in, std::string& out) const {
        if (mode == 2)
            out = in;
        if (!encrypts())
            return true;
        ByteArray data;
        data = Transformed(*cipher, Padded(in), true);
        data.getASCIIHex(out);
        return true;
    }
    bool decryptString(std::string const in, std::string& out) const {
        if (!encrypts())
            return encryptString(in, out);
        if (in.empty() || in.size() % 8 != 0) {
            out.clear();
            return in.empty();
        }
        ByteArray data;
        data.loadASCIIHex(in);
        if (data.length() % 8 != 0)
            return false;
        out = Transformed(*cipher, Content(data), false).c_str();
        return true;
    }
    bool encryptStringList(Texts const in, Texts& out) const {
        std::string encrypted;
        for (std::string const& item : in) {
            encryptString(item, encrypted);
            out.push_back(encrypted);
        }
        return true;
    }
    bool decryptStringList(Texts const& in, Texts& out) const { return encryptStringList(in, out); }
};

template <class Api>
struct WithItems {
    Api api;
    Data data{""};
    Texts texts{""};
};

static void RunKernels(std::string const& before, std::string const& text) {
    using namespace CommonAPI::internal;
    auto const& subkeys = initialBlowfishSubkeys;
    auto const& boxes = initialBlowfishBoxes;
    Blowfish cipher;
    std::string const encrypted = Transformed(cipher, text, true);
    for (auto const& kernel : BlowfishKernels()) {
        if (!kernel.supported())
            continue;
        std::string copy = before + text;
        auto const blocks = reinterpret_cast<unsigned char*>(copy.data()) + before.size();
        kernel.encrypt(subkeys, boxes, blocks, text.size() / 8);
        Same(copy, before + encrypted, kernel.name);
        kernel.decrypt(subkeys, boxes, blocks, text.size() / 8);
        Same(copy, before + text, kernel.name);
    }
}

template <class It>
std::string Apply(It& it, It& other, Line const& line) {
    if (it.data.size() + it.texts.size() > 40 || it.texts.back().size() > 3000)
        throw NotAllowed();  // or they would double without end
    auto const at = Within(line.at, std::min(other.data.size(), it.data.size()) - 1);
    ByteArray& data = it.data[at];
    std::string& text = it.texts[Within(line.at, it.texts.size() - 1)];
    std::string const& otherText = other.texts[Within(line.at, other.texts.size() - 1)];
    if (line.is("initialize")) {
        int const modes[] = {3, 4, 3, 4, 2, 7, -1};
        it.api.initializeAPI(other.data[at], modes[Within(line.count, 6)]);
    }
    if (line.is("assignOther"))
        it.api = other.api;
    if (line.is("add")) {
        it.data.emplace_back() = line.text;
        it.texts.push_back(line.text);
    }
    if (line.is("encryptData"))
        return Described(it.api.encryptData(other.data[at], data));
    if (line.is("decryptData"))
        return Described(it.api.decryptData(other.data[at], data));
    if (line.is("encryptString"))
        return Described(it.api.encryptString(otherText, text));
    if (line.is("decryptString"))
        return Described(it.api.decryptString(otherText, text));
    if (line.is("encryptDataList"))
        return Described(it.api.encryptDataList(other.data, it.data));
    if (line.is("decryptDataList"))
        return Described(it.api.decryptDataList(other.data, it.data));
    if (line.is("encryptStringList"))
        return Described(it.api.encryptStringList(other.texts, it.texts));
    if (line.is("decryptStringList"))  // which encrypts
        return Described(it.api.decryptStringList(other.texts, it.texts));
    if (line.is("runKernels"))
        RunKernels(line.text.substr(0, line.count % 8),
                   line.text + std::string(8 * Within(23 * line.count, 500), 'x'));
    return "";
}

template <class It>
std::string State(It& it) {
    std::string state;
    for (ByteArray const& item : it.data)
        state += Content(item) + '\n';
    for (std::string const& item : it.texts)
        state += item + '\n';
    return state;
}

static void Try(std::string const& input) {
    CompareWithModel<WithItems<EncryptionAPI>, WithItems<EncryptionAPIModel>>(input);
}

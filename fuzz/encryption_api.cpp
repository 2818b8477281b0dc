#include <CommonAPI/encryption_api.h>

#include "crypto/blowfish_kernel.h"
#include "crypto/built_in_passphrase.h"
#include "fuzz/model.h"

using Data = std::vector<ByteArray>;
using Texts = std::vector<std::string>;

static std::string Content(ByteArray array) {
    return std::string(*array, array.length());
}

/// The buffers have a model of their own.
struct EncryptionAPIModel {
    int mode = 2;
    Blowfish cipher;

    bool encrypts() const { return mode == 3 || mode == 4; }

    /// Padded, and block by block, which the published vectors cover.
    std::string transformed(std::string const& data, auto transformBlock) {
        ByteArray blocks;
        blocks = data;
        blocks.resize((blocks.length() + 7) / 8 * 8, 0);
        for (int at = 0; at < blocks.length(); at += 8) {
            Blowfish::Word halves[] = {blocks.at(at), blocks.at(at + 4)};
            (cipher.*transformBlock)(&halves[0], &halves[1]);
            blocks.assign(at, halves[0]);
            blocks.assign(at + 4, halves[1]);
        }
        return Content(blocks);
    }

    void initializeAPI(ByteArray const& key, int newMode) {
        mode = newMode;
        if (!encrypts())
            return;
        std::string password = Content(key);
        if (mode == 4) {
            cipher.setPassword(CommonAPI::internal::BuiltInPassphrase().data());
            password = transformed(password, &Blowfish::BF_De);
        }
        cipher.reset();
        cipher.setPassword(password.c_str());
    }

    bool encryptData(ByteArray const& in, ByteArray& out) {
        std::string const data = &in == &out ? "" : Content(in);
        out = encrypts() ? transformed(data, &Blowfish::BF_En) : data;
        return true;
    }
    bool decryptData(ByteArray const& in, ByteArray& out) {
        std::string const data = &in == &out ? "" : Content(in);
        bool const fails = encrypts() && data.size() % 8 != 0;
        out = fails ? "" : encrypts() ? transformed(data, &Blowfish::BF_De) : data;
        return !fails;
    }
    bool encryptDataList(Data const in, Data& out) {
        for (ByteArray const& item : in)
            encryptData(item, out.emplace_back());
        return true;
    }
    bool decryptDataList(Data const in, Data& out) {
        out.resize(in.size());
        for (std::size_t i = 0; i < in.size(); ++i) {
            if (encrypts() && in[i].length() % 8 != 0)
                return false;
            decryptData(in[i], out[i]);
        }
        return true;
    }

    bool encryptString(std::string const in, std::string& out) {
        if (mode == 2)
            out = in;
        if (!encrypts())
            return true;
        ByteArray data;
        data = transformed(in, &Blowfish::BF_En);
        data.getASCIIHex(out);
        return true;
    }
    bool decryptString(std::string const in, std::string& out) {
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
        out = transformed(Content(data), &Blowfish::BF_De).c_str();
        return true;
    }
    bool encryptStringList(Texts const in, Texts& out) {
        for (std::string const& item : in)
            encryptString(item, out.emplace_back());
        return true;
    }
    bool decryptStringList(Texts const& in, Texts& out) { return encryptStringList(in, out); }
};

template <class Api>
struct WithItems {
    Api api;
    Data data{""};
    Texts texts{""};
};

/// On blocks that begin behind some bytes.
static void RunKernels(std::string const& before, std::string const& text) {
    using namespace CommonAPI::internal;
    auto const& subkeys = initialBlowfishSubkeys;
    auto const& boxes = initialBlowfishBoxes;
    std::string const encrypted = EncryptionAPIModel().transformed(text, &Blowfish::BF_En);
    for (auto const& kernel : BlowfishKernels()) {
        if (!kernel.supported())
            continue;
        std::string copy = before + text;
        auto const blocks = reinterpret_cast<unsigned char*>(&copy[before.size()]);
        kernel.encrypt(subkeys, boxes, blocks, text.size() / 8);
        Same(copy, before + encrypted, kernel.name);
        kernel.decrypt(subkeys, boxes, blocks, text.size() / 8);
        Same(copy, before + text, kernel.name);
    }
}

template <class It>
std::string Apply(It& it, It& other, Line const& line) {
    auto const items = {it.data.size(), other.data.size(), it.texts.size(), other.texts.size()};
    auto const at = Within(line.at, std::min(items) - 1);
    if (line.is("initialize"))
        it.api.initializeAPI(other.data[at], 2 + line.count % 4);
    if (line.is("assignOther"))
        it.api = other.api;
    if (line.is("add")) {
        it.data.emplace_back() = line.text;
        it.texts.push_back(line.text);
    }
    if (line.is("encrypt"))
        return Described(it.api.encryptData(other.data[at], it.data[at]),
                         it.api.encryptString(other.texts[at], it.texts[at]));
    if (line.is("decrypt"))
        return Described(it.api.decryptData(other.data[at], it.data[at]),
                         it.api.decryptString(other.texts[at], it.texts[at]));
    if (line.is("encryptLists"))
        return Described(it.api.encryptDataList(other.data, it.data),
                         it.api.encryptStringList(other.texts, it.texts));
    if (line.is("decryptLists"))  // of which texts are encrypted
        return Described(it.api.decryptDataList(other.data, it.data),
                         it.api.decryptStringList(other.texts, it.texts));
    if (line.is("runKernels")) {
        std::string text = line.text;
        while (text.size() < 88u * Within(line.count, 40))
            text += std::to_string(text.size());
        text.resize(text.size() / 8 * 8);
        RunKernels(text.substr(0, line.at % 8), text);
    }
    return "";
}

template <class It>
std::string State(It& it) {
    std::string state;
    for (ByteArray const& item : it.data)
        state += Described(Content(item));
    for (std::string const& item : it.texts)
        state += Described(item);
    return state;
}

void Try(std::string const& input) {
    CompareWithModel<WithItems<EncryptionAPI>, WithItems<EncryptionAPIModel>>(input);
}

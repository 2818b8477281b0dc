#include <CommonAPI/encryption_api.h>

#include <memory>

#include "crypto/blowfish_kernel.h"
#include "crypto/built_in_passphrase.h"
#include "fuzz/blowfish_model.h"
#include "fuzz/model.h"
#include "types/byte_array_access.h"

using List = std::vector<std::string>;

static std::string Content(ByteArray const& array) {
    auto const& bytes = ByteArrayAccess::bytes(array);
    return {bytes.begin(), bytes.end()};
}

static std::string Padded(std::string data) {
    data.resize((data.size() + 7) / 8 * 8);
    return data;
}

static std::string Hexadecimal(std::string const& data) {
    std::string digits;
    for (unsigned char const byte : data)
        for (int const nibble : {byte >> 4, byte & 15})
            digits += "0123456789ABCDEF"[nibble];
    return digits;
}

/// The rules for this have a model of their own.
static std::string Parsed(std::string const& digits) {
    ByteArray bytes;
    bytes.loadASCIIHex(digits);
    return Content(bytes);
}

/// Takes copies of what is read, as one object may be given as input and output.
struct FacadeModel {
    int mode = 2;
    std::shared_ptr<BlowfishModel const> cipher;

    bool encrypts() const { return mode == 3 || mode == 4; }

    void initialize(std::string password, int newMode) {
        mode = newMode;
        if (mode == 4) {
            BlowfishModel const opener(CommonAPI::internal::BuiltInPassphrase().data());
            password = opener.transformed(Padded(password), false);
        }
        if (encrypts())  // copies keep the other one
            cipher = std::make_shared<BlowfishModel>(password.c_str());
    }

    bool encryptData(std::string in, std::string& out) const {
        out = encrypts() ? cipher->transformed(Padded(in), true) : in;
        return true;
    }

    bool decryptData(std::string in, std::string& out) const {
        bool const fails = encrypts() && in.size() % 8 != 0;
        out = fails ? "" : encrypts() ? cipher->transformed(in, false) : in;
        return !fails;
    }

    bool encryptString(std::string in, std::string& out) const {
        if (mode == 2)
            out = in;
        if (encrypts())
            out = Hexadecimal(cipher->transformed(Padded(in), true));
        return true;
    }

    bool decryptString(std::string in, std::string& out) const {
        if (mode == 2)
            out = in;
        if (!encrypts())
            return true;
        if (in.empty() || in.size() % 8 != 0) {
            out.clear();
            return in.empty();
        }
        std::string const data = Parsed(in);
        if (data.size() % 8 != 0)
            return false;
        out = cipher->transformed(data, false).c_str();
        return true;
    }

    bool decryptDataList(List in, List& out) const {
        out.resize(in.size());
        for (std::size_t i = 0; i < in.size(); ++i) {
            std::string decrypted;
            if (!decryptData(in[i], decrypted))
                return false;
            out[i] = decrypted;
        }
        return true;
    }

    using Call = bool (FacadeModel::*)(std::string, std::string&) const;
    bool appendEach(Call call, List in, List& out) const {
        std::string scratch;
        for (std::string const& item : in) {
            (this->*call)(item, scratch);
            out.push_back(scratch);
        }
        return true;
    }
};

struct Pair {
    EncryptionAPI real;
    FacadeModel model;
    std::vector<ByteArray> data{""};
    List dataModel{""};
    std::vector<std::string> texts{""};
    List textsModel{""};

    void runKernels(std::string const& text, std::size_t offset) {
        if (!model.cipher)
            return;
        BlowfishModel const& cipher = *model.cipher;
        for (auto const& kernel : CommonAPI::internal::BlowfishKernels()) {
            if (!kernel.supported())
                continue;
            std::string copy = text;
            auto const blocks = reinterpret_cast<unsigned char*>(copy.data()) + offset;
            kernel.encrypt(cipher.subkeys, cipher.boxes, blocks, (text.size() - offset) / 8);
            Same(copy, cipher.transformed(text, true, offset), kernel.name);
            kernel.decrypt(cipher.subkeys, cipher.boxes, blocks, (text.size() - offset) / 8);
            Same(copy, text, kernel.name);
        }
    }

    void apply(Pair& other, Line const& line) {
        if (data.size() + texts.size() > 40 || texts.back().size() > 3000)
            throw NotAllowed();  // or they would double without end
        auto const at = Within(line.at, std::min(other.data.size(), data.size()) - 1);
        auto const textAt = Within(line.at, std::min(other.texts.size(), texts.size()) - 1);
        std::string const in = this == &other ? "" : other.dataModel[at];  // assigned to itself
        bool done = true;
        bool modelDone = true;
        if (line.is("initialize")) {
            static int const modes[] = {3, 4, 3, 4, 2, 7, -1};
            int const mode = modes[Within(line.count, 6)];
            real.initializeAPI(other.data[at], mode);
            model.initialize(other.dataModel[at], mode);
        } else if (line.is("assignOther")) {
            real = other.real;
            model = FacadeModel(other.model);
        } else if (line.is("add")) {
            data.emplace_back() = line.text;
            dataModel.push_back(line.text);
            texts.push_back(line.text);
            textsModel.push_back(line.text);
        } else if (line.is("runKernels")) {
            std::string const blocks(8 * Within(line.count, 200), 'x');
            runKernels(line.text + blocks, Within(line.at, line.text.size()));
        } else if (line.is("encryptData")) {
            modelDone = model.encryptData(in, dataModel[at]);
            done = real.encryptData(other.data[at], data[at]);
        } else if (line.is("decryptData")) {
            modelDone = model.decryptData(in, dataModel[at]);
            done = real.decryptData(other.data[at], data[at]);
        } else if (line.is("encryptString")) {
            modelDone = model.encryptString(other.textsModel[textAt], textsModel[textAt]);
            done = real.encryptString(other.texts[textAt], texts[textAt]);
        } else if (line.is("decryptString")) {
            modelDone = model.decryptString(other.textsModel[textAt], textsModel[textAt]);
            done = real.decryptString(other.texts[textAt], texts[textAt]);
        } else if (line.is("encryptDataList")) {
            modelDone = model.appendEach(&FacadeModel::encryptData, other.dataModel, dataModel);
            done = real.encryptDataList(other.data, data);
        } else if (line.is("decryptDataList")) {
            modelDone = model.decryptDataList(other.dataModel, dataModel);
            done = real.decryptDataList(other.data, data);
        } else if (line.is("encryptStringList")) {
            modelDone = model.appendEach(&FacadeModel::encryptString, other.textsModel, textsModel);
            done = real.encryptStringList(other.texts, texts);
        } else if (line.is("decryptStringList")) {  // which encrypts
            modelDone = model.appendEach(&FacadeModel::encryptString, other.textsModel, textsModel);
            done = real.decryptStringList(other.texts, texts);
        }
        Same(done, modelDone, "done");
    }

    void compare() {
        List contents;
        for (ByteArray const& item : data)
            contents.push_back(Content(item));
        Same(contents == dataModel, true, "data");
        Same(texts == textsModel, true, "texts");
    }
};

#include "fuzz/driver.h"

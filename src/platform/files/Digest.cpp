#include "platform/files/Digest.h"

#include "platform/tasks/Cancellation.h"

#include <openssl/evp.h>

#include <memory>
#include <stdexcept>

namespace lumisort::files {

namespace {

constexpr std::size_t digestBytes = 32;

/// Fetched once: the lookup among the library's providers costs as much as hashing a small file.
const EVP_MD* algorithm() {
    static const EVP_MD* const fetched = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    return fetched;
}

using State = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;

void require(int done) {
    if (done != 1) throw std::runtime_error("SHA-256 is not available in the OpenSSL library");
}

/// Ends the computation of `state`.
std::string hexadecimal(EVP_MD_CTX* state) {
    static constexpr char hex[] = "0123456789abcdef";
    std::array<unsigned char, digestBytes> digest{};
    require(EVP_DigestFinal_ex(state, digest.data(), nullptr));
    std::string text;
    text.reserve(2 * digestBytes);
    for (const auto byte : digest) {
        text += hex[byte >> 4];
        text += hex[byte & 15];
    }
    return text;
}

} // namespace

struct Sha256::Context {
    State state{EVP_MD_CTX_new(), &EVP_MD_CTX_free};
};

Sha256::Sha256() : context_(new Context) {
    const bool ready = context_->state && algorithm() &&
                       EVP_DigestInit_ex2(context_->state.get(), algorithm(), nullptr) == 1;
    if (ready) return;
    delete context_;
    require(0);
}

Sha256::~Sha256() {
    delete context_;
}

void Sha256::update(std::span<const std::byte> bytes) {
    require(EVP_DigestUpdate(context_->state.get(), bytes.data(), bytes.size()));
}

std::string Sha256::soFar() const {
    const State copy{EVP_MD_CTX_new(), &EVP_MD_CTX_free};
    require(copy && EVP_MD_CTX_copy_ex(copy.get(), context_->state.get()));
    return hexadecimal(copy.get());
}

std::string Sha256::finish() {
    return hexadecimal(context_->state.get());
}

std::string sha256(FileSystem& system, const std::string& path, const std::stop_token& stop) {
    const auto file = system.open(path, Links::follow);
    const auto buffer = std::make_unique_for_overwrite<std::byte[]>(digestChunkBytes);
    Sha256 digest;
    tasks::checkCancelled(stop);
    while (const auto count = file->read({buffer.get(), digestChunkBytes})) {
        digest.update({buffer.get(), count});
        tasks::checkCancelled(stop);
    }
    return digest.finish();
}

} // namespace lumisort::files

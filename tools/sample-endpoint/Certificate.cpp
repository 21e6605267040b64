#include "sample-endpoint/Certificate.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>

namespace quorl::sample {

namespace {

template <auto release>
struct Release {
    template <class Object>
    void operator()(Object* object) const {
        release(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Release<EVP_PKEY_free>>;
using X509Pointer = std::unique_ptr<X509, Release<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Release<X509_EXTENSION_free>>;
using MemoryFile = std::unique_ptr<BIO, Release<BIO_free_all>>;

void require(bool succeeded) {
    if (!succeeded)
        throw std::runtime_error("No certificate can be made.");
}

template <class Write>
std::string pem(Write write) {
    const MemoryFile file(BIO_new(BIO_s_mem()));
    require(file && write(file.get()) == 1);
    char* bytes = nullptr;
    const auto size = BIO_get_mem_data(file.get(), &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

} // namespace

Certificate makeThrowAwayCertificate() {
    const Key key(EVP_EC_gen("P-256"));
    const X509Pointer certificate(X509_new());
    require(key && certificate);

    constexpr long secondsOfADay = 24 * 60 * 60;
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), secondsOfADay);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_set_version(certificate.get(), X509_VERSION_3);

    auto* const name = X509_get_subject_name(certificate.get());
    const auto* const host = reinterpret_cast<const unsigned char*>("127.0.0.1");
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, host, -1, -1, 0) == 1);
    require(X509_set_issuer_name(certificate.get(), name) == 1);
    const Extension address(X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1"));
    require(address && X509_add_ext(certificate.get(), address.get(), -1) == 1);
    require(X509_set_pubkey(certificate.get(), key.get()) == 1);
    require(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0);

    return {
        pem([&](BIO* file) { return PEM_write_bio_X509(file, certificate.get()); }),
        pem([&](BIO* file) {
            return PEM_write_bio_PrivateKey(file, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        }),
    };
}

} // namespace quorl::sample

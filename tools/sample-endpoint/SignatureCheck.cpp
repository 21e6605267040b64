#include "sample-endpoint/SignatureCheck.h"

#include "base/Text.h"

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <new>

namespace quorl::sample {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::string_view algorithm = "AWS4-HMAC-SHA256";
constexpr auto mismatch =
    "The request signature we calculated does not match the signature you provided. Check your AWS Secret "
    "Access Key and signing method. Consult the service documentation for details.";
constexpr auto incomplete = "Authorization header requires 'Credential', 'SignedHeaders' and 'Signature'.";
constexpr auto unknownKey = "The security token included in the request is invalid.";

std::string inHexadecimal(const Bytes& bytes) {
    std::string text;
    for (const auto byte : bytes) {
        std::array<char, 3> digits;
        std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned>(byte));
        text += digits.data();
    }
    return text;
}

Bytes digestOf(std::string_view bytes) {
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    Bytes digest(32);
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1 ||
        EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) != 1 ||
        EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1)
        throw std::bad_alloc();
    return digest;
}

Bytes authenticated(const Bytes& key, std::string_view bytes) {
    const std::unique_ptr<EVP_MAC, decltype(&EVP_MAC_free)> mac(EVP_MAC_fetch(nullptr, "HMAC", nullptr),
                                                                EVP_MAC_free);
    const std::unique_ptr<EVP_MAC_CTX, decltype(&EVP_MAC_CTX_free)> context(EVP_MAC_CTX_new(mac.get()),
                                                                            EVP_MAC_CTX_free);
    char name[] = "SHA256";
    const std::array parameters{OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, name, 0),
                                OSSL_PARAM_construct_end()};
    Bytes result(32);
    std::size_t size = 0;
    if (!context || EVP_MAC_init(context.get(), key.data(), key.size(), parameters.data()) != 1 ||
        EVP_MAC_update(context.get(), reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()) !=
            1 ||
        EVP_MAC_final(context.get(), result.data(), &size, result.size()) != 1)
        throw std::bad_alloc();
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (true) {
        const auto end = std::min(text.find(separator), text.size());
        parts.emplace_back(text.substr(0, end));
        if (end == text.size())
            return parts;
        text.remove_prefix(end + 1);
    }
}

// What the Authorization header says.
struct Claim {
    std::string accessKey;
    std::string scope; // day/region/service/aws4_request
    std::vector<std::string> scopeParts;
    std::string signedHeaders;
    std::string signature;
};

std::string parameter(std::string_view header, const std::string& name) {
    const auto start = header.find(name + "=");
    if (start == std::string_view::npos)
        return "";
    header.remove_prefix(start + name.size() + 1);
    return std::string(header.substr(0, header.find(',')));
}

std::optional<Claim> readClaim(const Request& request) {
    const auto* const header = request.header("Authorization");
    if (!header || !header->starts_with(std::string(algorithm) + " "))
        return std::nullopt;
    const auto credential = parameter(*header, "Credential");
    const auto slash = std::min(credential.find('/'), credential.size());
    Claim claim{.accessKey = credential.substr(0, slash),
                .scope = slash < credential.size() ? credential.substr(slash + 1) : "",
                .scopeParts = {},
                .signedHeaders = parameter(*header, "SignedHeaders"),
                .signature = parameter(*header, "Signature")};
    claim.scopeParts = split(claim.scope, '/');
    if (claim.scopeParts.size() != 4 || claim.signedHeaders.empty() || claim.signature.empty())
        return std::nullopt;
    return claim;
}

bool isSigned(const std::vector<std::string>& names, const std::string& name) {
    return std::ranges::find(names, name) != names.end();
}

// Nothing that decides what is asked, or by whom, may go unsigned.
bool signsEnough(const Request& request, const std::vector<std::string>& names) {
    if (!isSigned(names, "host") || !isSigned(names, "x-amz-date") ||
        !isSigned(names, "x-amz-content-sha256"))
        return false;
    return std::ranges::all_of(request.headers, [&](const Header& header) {
        const auto name = Text::lowercased(header.name);
        return !(name.starts_with("x-amz-") || name == "content-type") || isSigned(names, name);
    });
}

// Nothing where a header that is said to be signed did not come.
std::optional<std::string> canonicalForm(const Request& request, const Claim& claim) {
    const auto names = split(claim.signedHeaders, ';');
    if (!std::ranges::is_sorted(names) || !signsEnough(request, names))
        return std::nullopt;
    const auto query = std::min(request.path.find('?'), request.path.size());
    std::string form = request.method + '\n' + request.path.substr(0, query) + '\n';
    if (query < request.path.size())
        form += request.path.substr(query + 1);
    form += '\n';
    for (const auto& name : names) {
        const auto* const value = request.header(name);
        if (!value)
            return std::nullopt;
        form += name + ':' + std::string(Text::trimmed(*value)) + '\n';
    }
    return form + '\n' + claim.signedHeaders + '\n' + inHexadecimal(digestOf(request.body));
}

std::string signatureOf(const std::string& canonical, const std::string& time, const Claim& claim,
                        const std::string& secretKey) {
    const std::string secret = "AWS4" + secretKey;
    Bytes key(secret.begin(), secret.end());
    for (const auto& part : claim.scopeParts)
        key = authenticated(key, part);
    const std::string toSign =
        std::string(algorithm) + '\n' + time + '\n' + claim.scope + '\n' + inHexadecimal(digestOf(canonical));
    return inHexadecimal(authenticated(key, toSign));
}

std::string headerOrEmpty(const Request& request, std::string_view name) {
    const auto* const value = request.header(name);
    return value ? *value : "";
}

} // namespace

std::optional<std::string> problemWithSignature(const Request& request,
                                                const std::vector<SigningCredentials>& accepted,
                                                std::string_view service) {
    if (!request.header("Authorization"))
        return "Missing Authentication Token";
    const auto claim = readClaim(request);
    if (!claim)
        return incomplete;
    const auto owner = std::ranges::find(accepted, claim->accessKey, &SigningCredentials::accessKey);
    if (owner == accepted.end() || owner->sessionToken != headerOrEmpty(request, "x-amz-security-token"))
        return unknownKey;

    const auto time = headerOrEmpty(request, "x-amz-date");
    const auto canonical = canonicalForm(request, *claim);
    const bool isRightScope = claim->scopeParts[0] == time.substr(0, 8) && claim->scopeParts[2] == service &&
                              claim->scopeParts[3] == "aws4_request";
    const bool isRightHash =
        headerOrEmpty(request, "x-amz-content-sha256") == inHexadecimal(digestOf(request.body));
    if (!canonical || !isRightScope || !isRightHash ||
        signatureOf(*canonical, time, *claim, owner->secretKey) != claim->signature)
        return mismatch;
    return std::nullopt;
}

} // namespace quorl::sample

#include "transports/SigV4.h"

#include "base/Text.h"
#include "decision/HostName.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <chrono>
#include <ctime>
#include <new>
#include <utility>

namespace quorl::SigV4 {

namespace {

constexpr std::string_view algorithm = "AWS4-HMAC-SHA256";

std::string hmac(std::string_view key, std::string_view data) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(data.data());
    // OpenSSL fails here for want of memory alone.
    if (!HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), bytes, data.size(), digest, &size))
        throw std::bad_alloc();
    return {reinterpret_cast<const char*>(digest), size};
}

// What a URL has between its host and its fragment.
struct Target {
    std::string_view path;
    std::string_view query;
};

Target targetOf(std::string_view url) {
    url = url.substr(0, url.find('#'));
    const std::size_t queryMark = url.find('?');
    Target target;
    if (queryMark != std::string_view::npos)
        target.query = url.substr(queryMark + 1);
    url = url.substr(0, queryMark);
    const std::size_t pathStart = url.find('/', url.find("://") + 3);
    target.path = pathStart == std::string_view::npos ? "/" : url.substr(pathStart);
    return target;
}

// Lower-case names in ascending order with their trimmed values.
Headers canonicalHeaders(const Headers& headers) {
    Headers canonical;
    for (const auto& [name, value] : headers)
        canonical[Text::lowercased(name)] = Text::trimmed(value);
    return canonical;
}

std::string signedNames(const Headers& canonical) {
    std::string names;
    for (const auto& [name, value] : canonical)
        names.append(names.empty() ? "" : ";").append(name);
    return names;
}

std::string credentialScope(std::string_view day, const Service& service) {
    return std::string(day) + "/" + service.region + "/" + service.name + "/aws4_request";
}

} // namespace

SignedRequest sign(std::string_view method, std::string url, std::string body, const Headers& extraHeaders,
                   const Credentials& credentials, const Service& service, Date date) {
    const std::string time = timestamp(date);
    const std::string day = time.substr(0, 8);
    const std::string payloadHash = hash(body);
    Headers headers = extraHeaders;
    headers["host"] = findHostName(url).value_or("");
    headers["x-amz-date"] = time;
    headers["x-amz-content-sha256"] = payloadHash;
    if (!credentials.sessionToken.empty())
        headers["x-amz-security-token"] = credentials.sessionToken;

    const std::string scope = credentialScope(day, service);
    const std::string stringToSign = std::string(algorithm) + "\n" + time + "\n" + scope + "\n" +
                                     hash(canonicalRequest(method, url, headers, payloadHash));
    const std::string signature = hex(hmac(signingKey(credentials.secretKey, day, service), stringToSign));
    const std::string names = signedNames(canonicalHeaders(headers));
    headers["Authorization"] = std::string(algorithm) + " Credential=" + credentials.accessKey + "/" + scope +
                               ", SignedHeaders=" + names + ", Signature=" + signature;
    return {std::move(url), std::move(headers), std::move(body)};
}

std::string timestamp(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    const std::time_t time = seconds.time_since_epoch().count();
    std::tm utc{};
    gmtime_r(&time, &utc);
    char text[32];
    const std::size_t size = std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &utc);
    return {text, size};
}

std::string canonicalRequest(std::string_view method, std::string_view url, const Headers& headers,
                             std::string_view payloadHash) {
    const Target target = targetOf(url);
    const Headers canonical = canonicalHeaders(headers);
    std::string request(method);
    request.append("\n").append(target.path).append("\n").append(target.query).append("\n");
    for (const auto& [name, value] : canonical)
        request.append(name).append(":").append(value).append("\n");
    return request.append("\n").append(signedNames(canonical)).append("\n").append(payloadHash);
}

std::string signingKey(std::string_view secretKey, std::string_view day, const Service& service) {
    const std::string dayKey = hmac("AWS4" + std::string(secretKey), day);
    return hmac(hmac(hmac(dayKey, service.region), service.name), "aws4_request");
}

std::string hash(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_sha256(), nullptr) != 1)
        throw std::bad_alloc();
    return hex({reinterpret_cast<const char*>(digest), size});
}

std::string hex(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text += digits[byte >> 4];
        text += digits[byte & 0xf];
    }
    return text;
}

} // namespace quorl::SigV4

#include "Signature.h"

#include "Failure.h"

#include <algorithm>

namespace {

/// The DER form of a DigestInfo of SHA-256 up to its digest (RFC 8017, section 9.2): for PKCS #1
/// the token pads what it is given and knows nothing of digests.
constexpr unsigned char kDigestInfo[] = {0x30, 0x31, 0x30, 0x0d, 0x06, 0x09, 0x60, 0x86, 0x48, 0x01,
    0x65, 0x03, 0x04, 0x02, 0x01, 0x05, 0x00, 0x04, 0x20};

std::string tagged(char tag, const std::string& content)
{
    constexpr std::size_t kShort = 127;
    std::string head(1, tag);
    if (content.size() > kShort) {
        head += '\x81'; // the length has a byte of its own
    }
    return head + static_cast<char>(content.size()) + content;
}

/// An unsigned number as a DER integer: without leading zeros, but never with the sign bit set.
std::string integer(const std::string& number)
{
    std::string digits = number.substr(std::min(number.find_first_not_of('\0'), number.size() - 1));
    if ((static_cast<unsigned char>(digits[0]) & 0x80U) != 0) {
        digits.insert(0, 1, '\0');
    }
    return tagged('\x02', digits);
}

/// A token gives r and s of ECDSA one after the other; certificates and openssl want a sequence.
std::string der_of_pair(const std::string& pair)
{
    constexpr std::size_t kLongest = 132; // of the curve P-521
    const std::size_t half = pair.size() / 2;
    if (half == 0 || pair.size() % 2 != 0 || pair.size() > kLongest) {
        throw Failure(CKR_SIGNATURE_LEN_RANGE);
    }
    return tagged('\x30', integer(pair.substr(0, half)) + integer(pair.substr(half)));
}

} // namespace

std::string sign_digest(Session& session, CK_OBJECT_HANDLE key, Scheme scheme,
    const std::string& digest, std::optional<Secret>& pin)
{
    CK_RSA_PKCS_PSS_PARAMS pss = {CKM_SHA256, CKG_MGF1_SHA256, digest.size()};
    CK_MECHANISM mechanism = {CKM_ECDSA, nullptr, 0};
    std::string data = digest;
    if (scheme == Scheme::RsaPss) {
        mechanism = {CKM_RSA_PKCS_PSS, &pss, sizeof pss};
    } else if (scheme == Scheme::RsaPkcs1) {
        mechanism.mechanism = CKM_RSA_PKCS;
        data.insert(data.begin(), std::begin(kDigestInfo), std::end(kDigestInfo));
    }

    const Module& module = session.module();
    check(module->C_SignInit(session.handle(), &mechanism, key));
    // Keys for qualified signatures want the PIN for each of them.
    if (session.value<CK_BBOOL>(key, CKA_ALWAYS_AUTHENTICATE, CK_FALSE) != CK_FALSE) {
        session.log_in(CKU_CONTEXT_SPECIFIC, pin);
    }
    pin.reset();
    std::string signature(4096, '\0');
    unsigned long size = signature.size();
    check(module->C_Sign(session.handle(), reinterpret_cast<unsigned char*>(data.data()),
        data.size(), reinterpret_cast<unsigned char*>(signature.data()), &size));
    signature.resize(size);
    return scheme == Scheme::Ecdsa ? der_of_pair(signature) : signature;
}

// Failure.h: what ends a command early. It never leaves the plug-in: the command's status is made
// of it.
#pragma once

#include <p11-kit/pkcs11.h>
#include <stdexcept>
#include <string>

struct Failure : std::runtime_error {
    explicit Failure(CK_RV code, const std::string& reason = "")
        : std::runtime_error(reason)
        , status(code)
    {
    }

    CK_RV status; ///< a return value of PKCS #11; what() is for those who maintain the machine
};

/// Throws unless the status is CKR_OK.
inline void check(CK_RV status)
{
    if (status != CKR_OK) {
        throw Failure(status);
    }
}

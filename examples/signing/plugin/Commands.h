// Commands.h: what the plug-in does for a page, each step of which may take its time. Commands run
// on a thread of their own, one at a time, and know nothing of the page. Who starts one sets its
// first step.
#pragma once

#include "Signature.h"
#include "Tokens.h"

#include <atomic>

/// What can be seen of a command while it runs, and asked of it.
struct Progress {
    std::atomic<const char*> step {""};
    std::atomic<int> percent {0};
    std::atomic<bool> stop {false};
};

/// What a command has found out.
struct Outcome {
    CK_RV status = CKR_OK;
    std::string reason; ///< for those who maintain the machine; may be empty
    std::optional<std::vector<Token>> tokens;
    std::optional<std::string> digest;
    std::string signature;
};

/// What is to be signed, with which key.
struct Order {
    Token token;
    Key key;
    Scheme scheme = Scheme::RsaPkcs1;
    std::string digest;
    Secret pin;
};

/// Step: "document".
Outcome read_document(const std::string& path, Progress& progress);

/// Steps: "module", "tokens". Calls `opened` when the module is open.
Outcome list_tokens(Module& module, const std::string& path, void (*opened)(), Progress& progress);

/// Steps: "login", "signature". Reads the tokens anew when the signature failed: they may have
/// become fewer, or lack a try. A status that says little
/// becomes CKR_DEVICE_REMOVED when the token is gone.
Outcome sign(const Module& module, Order& order, Progress& progress);

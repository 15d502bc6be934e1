#include "Commands.h"

#include "Document.h"
#include "Failure.h"
#include "Lists.h"

namespace {

/// Makes an outcome of whatever ends the work.
template <typename Work> Outcome outcome_of(const Work& work)
{
    Outcome outcome;
    try {
        work(outcome);
    } catch (const Failure& failure) {
        outcome.status = failure.status;
        outcome.reason = failure.what();
    } catch (const std::exception& error) {
        outcome.status = CKR_GENERAL_ERROR;
        outcome.reason = error.what();
    }
    return outcome;
}

std::string signature_of(const Module& module, Order& order, Progress& progress)
{
    check_presence(module, order.token);
    Session session(module, order.token.slot);
    std::optional<Secret> pin;
    if ((order.token.flags & CKF_PROTECTED_AUTHENTICATION_PATH) == 0) {
        pin = std::move(order.pin);
    }
    if ((order.token.flags & CKF_LOGIN_REQUIRED) != 0) {
        if (pin && pin->text().empty()) {
            throw Failure(CKR_PIN_LEN_RANGE); // and no try is lost
        }
        session.log_in(CKU_USER, pin);
    }
    progress.step = "signature";
    const CK_OBJECT_HANDLE key = private_key(session, order.key);
    return sign_digest(session, key, order.scheme, order.digest, pin);
}

/// Whether modules end a call with this status when the token or its reader has been pulled out.
bool may_mean_removal(CK_RV status)
{
    constexpr CK_RV kStatuses[] = {CKR_SLOT_ID_INVALID, CKR_GENERAL_ERROR, CKR_FUNCTION_FAILED,
        CKR_DEVICE_ERROR, CKR_OBJECT_HANDLE_INVALID, CKR_SESSION_CLOSED, CKR_SESSION_HANDLE_INVALID,
        CKR_USER_NOT_LOGGED_IN};
    return std::find(std::begin(kStatuses), std::end(kStatuses), status) != std::end(kStatuses);
}

} // namespace

Outcome read_document(const std::string& path, Progress& progress)
{
    return outcome_of([&](Outcome& outcome) {
        outcome.digest.emplace(); // that of before is out of date, whatever happens
        outcome.digest = digest_of_document(path, [&progress](int percent) {
            progress.percent = percent;
            if (progress.stop) {
                throw Failure(CKR_FUNCTION_CANCELED);
            }
        });
    });
}

Outcome list_tokens(Module& module, const std::string& path, void (*opened)(), Progress& progress)
{
    return outcome_of([&](Outcome& outcome) {
        outcome.tokens.emplace();
        module.open(path);
        opened();
        progress.step = "tokens";
        outcome.tokens = read_tokens(module);
        if (outcome.tokens->empty()) {
            throw Failure(CKR_TOKEN_NOT_PRESENT);
        }
    });
}

Outcome sign(const Module& module, Order& order, Progress& progress)
{
    Outcome outcome = outcome_of(
        [&](Outcome& done) { done.signature = signature_of(module, order, progress); });
    if (outcome.status != CKR_OK) {
        outcome.tokens
            = outcome_of([&](Outcome& seen) { seen.tokens = read_tokens(module); }).tokens;
        if (outcome.tokens && with_id(*outcome.tokens, order.token.id) == nullptr
            && may_mean_removal(outcome.status)) {
            outcome.status = CKR_DEVICE_REMOVED;
        }
    }
    return outcome;
}

#include "webapp/ResultFile.h"

#include "util/StringUtil.h"
#include "webapp/ShellState.h"

namespace {

const char* result_text(const char* status, const char* response)
{
    if (tovik::_strlen(status) == 0) {
        return "CKR_CANCEL";
    }
    const bool success = tovik::_strcmp(status, "OK") == 0 || tovik::_strcmp(status, "CKR_OK") == 0;
    return success && tovik::_strlen(response) > 0 ? response : status;
}

} // namespace

void wa_handle_result(const char* path)
{
    const OwnedFile file(tovik::_strlen(path) == 0 ? nullptr : std::fopen(path, "wb"));
    if (file) {
        const char* text = result_text(g_Status.get(), g_Response.get());
        std::fwrite(text, 1, tovik::_strlen(text), file.get());
    }
}

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
    OwnedFile file(tovik::_strlen(path) == 0 ? nullptr : std::fopen(path, "wb"));
    if (!file) {
        return;
    }
    const char* text = result_text(g_Status.get(), g_Response.get());
    const std::size_t length = tovik::_strlen(text);
    const bool written
        = std::fwrite(text, 1, length, file.get()) == length && std::fflush(file.get()) == 0;
    if (std::fclose(file.release()) != 0 || !written) {
        file.reset(std::fopen(path, "wb"));
    }
}

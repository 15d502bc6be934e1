#include "util/Desktop.h"

void wa_open_url(const char*) { }

void wa_call_script(const char*, unsigned char) { }

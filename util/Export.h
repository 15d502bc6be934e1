// Export.h: the one mark that opens a symbol of the library; everything else stays hidden.
#pragma once

#define TOVIK_EXPORT __attribute__((visibility("default")))

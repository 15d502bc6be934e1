// TraceFile.h: a traced plug-in's file: a copy of the tracing library that ends with the path of
// the plug-in to which it forwards.
#pragma once

#include <string>

/// Appends the path, of less than 4096 bytes, to the file.
/// Throws std::runtime_error when it is too long or cannot be written.
void append_traced_path(const std::string& file, const std::string& path);

/// The path that the file ends with; empty when it is no such file.
std::string traced_path(const std::string& file);

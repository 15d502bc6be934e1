// Line.h: lines on standard error with texts that a page chooses.
#pragma once

#include <initializer_list>
#include <string_view>

/// Writes the parts and a line end to standard error, in one piece. What does not fit into 4000
/// bytes is left out; bytes that would control a terminal, break the line or reorder its text are
/// written as "\xHH".
void print_line(std::initializer_list<std::string_view> parts);

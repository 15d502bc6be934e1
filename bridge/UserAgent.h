// UserAgent.h: which texts WebKit accepts as a user agent.
#pragma once

/// The first character of `text` that WebKit refuses in the value of a User-Agent header; null when
/// it accepts all of `text`. That is the terminator when the text ends too early.
///
/// The grammar is that of RFC 9110, section 10.1.5: a product, "name" or "name/version", both
/// tokens, then any number of further products and of comments in parentheses, which nest. WebKit
/// accepts blanks and tabs as separators, but not at the start or end, needs none beside a comment,
/// and accepts no character beyond U+00FF in a comment.
const char* wa_user_agent_fault(const char* text);

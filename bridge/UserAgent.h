// UserAgent.h: which texts WebKit accepts as a user agent.
#pragma once

/// Where WebKit stops reading `text` as the value of a User-Agent header; null when it accepts all
/// of it. Of a text that is broken off, that is its end.
///
/// The grammar is that of RFC 9110, section 10.1.5: a product, "name" or "name/version", both
/// tokens, then any number of further products and of comments in parentheses, which nest. As
/// WebKit reads it, blanks and tabs separate and neither begin nor end the text, none is needed
/// beside a comment, and a comment holds no character beyond U+00FF.
const char* wa_user_agent_fault(const char* text);

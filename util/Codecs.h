// Codecs.h: parts of action URLs, URL and base64 decoding, numbers as text, replacement and
// splitting of texts. New strings are arrays from array-new, owned by the caller (OwnedText).
#pragma once

/// The text of `uri` after its first "://"; null when there is none or `uri` is null.
const char* after_scheme(const char* uri);

/// New string with the action name of `uri`: the text from its first "://" to the next "?" or the
/// end. Null when there is no "://", the name is empty, or `uri` is null.
char* get_uri_action(const char* uri);

/// New string with the URL-decoded value of the first query item `name`=value; the empty string
/// when nothing follows the "=". The query begins after the first "?", or at the start of a `uri`
/// without "?"; "&" separates its items. Null when no item has this name, `uri` is null, or `name`
/// is null or empty.
///
///     get_uri_argument("tvk://exit?status=CKR_OK&response=a+b%21", "response") // "a b!"
///     get_uri_argument("tvk://exit?status=CKR_OK", "response")                 // null
char* get_uri_argument(const char* uri, const char* name);

/// Decodes `text`, which is not null, in place: "+" becomes a space, "%" and two hexadecimal digits
/// become that byte, and "%00" ends the text. Any other "%" stays. (RFC 3986, section 2.1, with the
/// "+" of HTML forms.)
void url_decode(char* text);

/// Decodes `length` characters of base64 (RFC 4648, section 4) in place and returns the number of
/// bytes, after which a 0 byte is written. The first "=" ends the data; padding may be missing.
/// The low 7 bits of a character count, and characters outside the alphabet are skipped. Length 0
/// writes nothing.
unsigned long base64_decode(unsigned char* data, unsigned long length);

/// Writes `value` in decimal and a terminator. Of a positive number with more than capacity - 1
/// digits, the last ones are kept. A negative number with n digits needs a capacity of n + 3; below
/// that `buffer` becomes the empty string. Capacity 0 writes nothing. True when a digit was
/// written.
bool number2string(long value, char* buffer, unsigned long capacity);

/// Replaces the first `find` in `text` in place. False, with `text` unchanged, when it holds no
/// `find`, or the result and its terminator exceed `capacity` bytes.
///
///     char text[16] = "one two two";
///     replace_text(text, sizeof text, "two", "three"); // true: "one three two"
///     replace_text(text, sizeof text, "two", "seven"); // true: "one three seven"
///     replace_text(text, sizeof text, "one", "eleven"); // false: 18 characters and the terminator
bool replace_text(char* text, unsigned long capacity, const char* find, const char* replacement);

/// Copies part number `index` of `text`, counted from 0, into `part` and returns the length copied,
/// at most capacity - 1. A part that does not exist is empty. Capacity 0 writes nothing.
///
///     char part[8];
///     get_string_part("6.12.3", '.', 1, part, sizeof part); // 2: "12"
///     get_string_part("6.12.3", '.', 3, part, sizeof part); // 0: ""
unsigned long get_string_part(
    const char* text, char separator, unsigned long index, char* part, unsigned long capacity);

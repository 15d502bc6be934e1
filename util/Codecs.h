// Codecs.h: action URLs taken apart, URL and base64 decoding, numbers as text, and two small
// text editors. New strings are arrays from array-new, owned by the caller (OwnedText).
#pragma once

/// The text of `uri` after its first "://"; null when there is none or `uri` is null.
const char* after_scheme(const char* uri);

/// New string with the action name of `uri`: what follows the first "://" up to the first "?"
/// behind it. Null when there is no "://", or no name, or `uri` is null.
char* get_uri_action(const char* uri);

/// New string with the URL-decoded value of the first query item `name`=value; the empty string
/// when nothing follows the "=". The items are separated by "&" and begin behind the first "?",
/// or at the start of a `uri` without one. Null when there is no such item or a null or empty
/// argument.
char* get_uri_argument(const char* uri, const char* name);

/// Decodes `text`, which is not null, in place: "+" is a space, "%" with two hexadecimal digits
/// is that byte, of which a 0 ends the text; any other "%" stays (RFC 3986, section 2.1, with the
/// "+" of HTML forms).
void url_decode(char* text);

/// Decodes `length` characters of base64 (RFC 4648, section 4) in place and returns the number of
/// bytes, behind which a 0 byte is written. The first "=" ends the data, padding may be missing,
/// and a character outside the alphabet is skipped. Length 0 writes nothing.
/// A character counts by its low 7 bits.
unsigned long base64_decode(unsigned char* data, unsigned long length);

/// Writes `value` in decimal. Of a number with more than capacity - 1 digits the lowest ones
/// are kept; true unless nothing was written. A negative number needs room for its digits and
/// three bytes more, otherwise `buffer` is the empty string and the result false. Capacity 0
/// writes nothing.
bool number2string(long value, char* buffer, unsigned long capacity);

/// Replaces the first `find` in `text` in place. False, with `text` as it was, when there is none
/// or the result and its terminator exceed `capacity` bytes.
bool replace_text(char* text, unsigned long capacity, const char* find, const char* replacement);

/// Copies the part of `text` behind `index` separators, at most capacity - 1 characters of it,
/// into `part` and returns its length; a part that does not exist is empty. Capacity 0 writes
/// nothing.
unsigned long get_string_part(
    const char* text, char separator, unsigned long index, char* part, unsigned long capacity);

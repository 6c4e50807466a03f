// Text helpers that readers and writer share. Texts are byte strings in the
// session's own 8-bit code page; nothing here decodes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace morvanta {

// The text with "a" to "z" made upper case, every other byte as it is.
std::string AsciiUpper(std::string_view text);

// Blanks (and only blanks) taken off both ends, as fixed-width fields are read.
std::string TrimBlanks(std::string_view text);

// Every "&" becomes "&amp;"; with blanksToo every blank first becomes "%20".
// Nothing else is escaped.
std::string EscapeText(std::string_view text, bool blanksToo = false);

// "<", ">" and '"' as "&lt;", "&gt;" and "&quot;", every other byte as it
// is: a text that may then stand in element text, an attribute value or an
// XML packet without breaking the markup. Used for well-formed documents.
std::string EscapeMarkup(std::string_view text);

// A blank between any two hyphens that follow each other ("a--b" gives
// "a- -b"), so that the text may stand inside a comment.
std::string SeparateHyphens(std::string_view text);

// Replaces `find` again and again from the start until it no longer occurs.
// A replacement that contains `find` is applied in a single pass instead of
// looping for ever.
std::string ReplaceAll(std::string subject, std::string_view find, std::string_view replacement);

// Two upper-case hexadecimal digits.
std::string HexByte(std::uint8_t value);

// Eight upper-case hexadecimal digits.
std::string HexWord(std::uint32_t value);

// The part behind the last path separator ("\" or "/"); the whole path when
// it has none.
std::string FileNameOf(std::string_view path);

// The source path as it may stand in a comment of an 8-bit document that is
// later recoded: unchanged unless `nonEnglish`, else every character that
// is not plain printable ASCII becomes "%" and a hexadecimal code.
std::string MakeCommentSafe(std::string_view text, bool nonEnglish);

// The length of the UTF-8 sequence at `at` (which must be inside `text`),
// and its code point; 0 for bytes that are not UTF-8 (overlong forms and
// surrogates included).
std::size_t Utf8At(std::string_view text, std::size_t at, std::uint32_t& code);

// Whether all of `text` is UTF-8.
bool IsUtf8(std::string_view text);

}  // namespace morvanta

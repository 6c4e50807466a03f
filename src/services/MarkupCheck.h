// The check of a finished document: the places where an XML parser stops
// reading it. It looks for what the session's texts can bring into a
// document (a "<", ">", '"' or "&" that is not escaped, "--" in a comment,
// bytes that are not UTF-8, characters XML does not allow) and for the
// structure around them; it is not a validating parser. One pass over the
// document, whatever it holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Diagnostic.h"

namespace morvanta {

enum class MarkupFaultKind {
    Less,         // a "<" that starts no markup, or one in an attribute value
    Greater,      // the ">" of "]]>" in text
    Quote,        // a '"' that ends an attribute value before its end
    Ampersand,    // an "&" that starts no reference XML knows
    Hyphens,      // "--" inside a comment
    NotUtf8,      // bytes that are not UTF-8
    Character,    // a character XML does not allow, such as a control character
    Unclosed,     // a comment, section, tag or element that is never closed
    OutsideRoot,  // text or an element outside the root element
};

struct MarkupFault {
    MarkupFaultKind Kind{};
    std::size_t Line = 0;         // counted from 1
    std::string Place;            // "the text of <name>", "the attribute id of <file>", "a comment", ...
    std::uint32_t Character = 0;  // the code point, for MarkupFaultKind::Character
    bool operator==(const MarkupFault&) const = default;
};

struct MarkupCheck {
    std::vector<MarkupFault> Faults;  // in the order found, at most as many as asked for
    std::size_t Total = 0;            // every fault found; one kind is counted once per text, value or comment
};

// The faults of a document (which may start with a byte order mark). The
// cue marker packet inside the CDATA section of <xmpMetadata> is XML of its
// own that Audition parses, so it is checked as a document too, and its
// faults carry the lines of the whole document.
MarkupCheck CheckMarkup(std::string_view document, std::size_t namedAtMost = 10);

// One warning per named fault and one that counts the rest. Without
// `recoded` the 8-bit texts were left as the session had them, so bytes
// that are not UTF-8 come with the advice to name their language.
std::vector<Diagnostic> MarkupWarnings(const MarkupCheck& check, bool recoded);

}  // namespace morvanta

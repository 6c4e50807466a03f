// A single forward scan over the document with a stack of open elements.
// Where the markup breaks, the scan says which text the stray character
// most likely came from and goes on behind it, so that one bad name gives
// one fault and the rest of the document is still looked at.
#include "services/MarkupCheck.h"

#include <algorithm>
#include <unordered_map>

#include "services/TextHelpers.h"

namespace morvanta {
namespace {

enum class PlaceKind { Text, Attribute, Comment, Cdata, Instruction, Doctype, Element, Outside };

struct Place {
    PlaceKind Kind = PlaceKind::Text;
    std::string_view Element;  // empty outside the root element
    std::string_view Attribute;
};

// A name as a message shows it; a hostile document may hold a very long one.
std::string Shown(std::string_view name) {
    constexpr std::size_t kLongest = 40;
    return name.size() <= kLongest ? std::string(name) : std::string(name.substr(0, kLongest)) + "...";
}

std::string PlaceText(const Place& place) {
    const std::string element = "<" + Shown(place.Element) + ">";
    switch (place.Kind) {
        case PlaceKind::Text:
            return place.Element.empty() ? "the text outside the root element" : "the text of " + element;
        case PlaceKind::Attribute: return "the attribute " + Shown(place.Attribute) + " of " + element;
        case PlaceKind::Comment: return "a comment";
        case PlaceKind::Cdata: return place.Element.empty() ? "a CDATA section" : "the CDATA section of " + element;
        case PlaceKind::Instruction: return "a processing instruction";
        case PlaceKind::Doctype: return "the document type declaration";
        case PlaceKind::Element: return "the element " + element;
        case PlaceKind::Outside: return "text";
    }
    return {};
}

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsNameStart(char c) {
    const auto b = static_cast<unsigned char>(c);
    return (b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z') || b == '_' || b == ':' || b >= 0x80;
}

bool IsNameChar(char c) { return IsNameStart(c) || (c >= '0' && c <= '9') || c == '.' || c == '-'; }

bool IsXmlChar(std::uint32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

const Place kOutside{PlaceKind::Outside, {}, {}};

class Scanner {
public:
    Scanner(std::string_view text, std::size_t firstLine, bool packet, MarkupCheck& check, std::size_t namedAtMost)
        : s_(text), check_(check), namedAtMost_(namedAtMost), packet_(packet), countedLine_(firstLine) {}

    void Run() {
        if (!packet_ && s_.starts_with("\xEF\xBB\xBF")) pos_ = 3;
        while (pos_ < s_.size()) {
            if (s_[pos_] == '<') Markup();
            else Text();
        }
        for (auto open = stack_.rbegin(); open != stack_.rend(); ++open)
            Record(MarkupFaultKind::Unclosed, open->Line, {PlaceKind::Element, open->Name, {}}, 0);
    }

private:
    struct OpenElement {
        std::string_view Name;
        std::size_t Line = 0;
        std::size_t ParentSegment = 0;  // the text its start tag stands in
    };
    struct Pending {
        MarkupFaultKind Kind{};
        std::size_t Position = 0;
        Place Where;
        std::uint32_t Character = 0;
    };

    // ---- Faults ---------------------------------------------------------

    std::size_t LineAt(std::size_t position) {
        position = std::min(position, s_.size());
        if (position >= countedTo_) {
            countedLine_ += static_cast<std::size_t>(std::count(s_.begin() + static_cast<std::ptrdiff_t>(countedTo_),
                                                                s_.begin() + static_cast<std::ptrdiff_t>(position), '\n'));
        } else {
            countedLine_ -= static_cast<std::size_t>(std::count(s_.begin() + static_cast<std::ptrdiff_t>(position),
                                                                s_.begin() + static_cast<std::ptrdiff_t>(countedTo_), '\n'));
        }
        countedTo_ = position;
        return countedLine_;
    }

    void Record(MarkupFaultKind kind, std::size_t line, const Place& where, std::uint32_t character) {
        ++check_.Total;
        if (check_.Faults.size() < namedAtMost_) check_.Faults.push_back({kind, line, PlaceText(where), character});
    }

    // One fault of a kind per text, value or comment (`segment`); inside a
    // tag the faults wait until the tag turns out to be one.
    void Report(MarkupFaultKind kind, std::size_t position, const Place& where, std::size_t segment,
                std::uint32_t character = 0) {
        if (Repeated(kind, segment)) return;
        if (inTag_) pending_.push_back({kind, position, where, character});
        else Record(kind, LineAt(position), where, character);
    }

    bool Repeated(MarkupFaultKind kind, std::size_t segment) {
        const unsigned bit = 1u << static_cast<unsigned>(kind);
        if (segment == lastSegment_ && (reported_ & bit) != 0) return true;
        if (segment != lastSegment_) reported_ = 0;
        lastSegment_ = segment;
        reported_ |= bit;
        return false;
    }

    std::size_t NewSegment() { return ++segments_; }

    Place TextPlace() const { return {PlaceKind::Text, stack_.empty() ? std::string_view() : stack_.back().Name, {}}; }

    // The character at `at` in `where`; its length.
    std::size_t CharAt(std::size_t at, const Place& where, std::size_t segment) {
        const auto byte = static_cast<unsigned char>(s_[at]);
        if (byte >= 0x20 && byte < 0x80) return 1;
        std::uint32_t code = 0;
        const std::size_t length = Utf8At(s_, at, code);
        if (length == 0) {
            Report(MarkupFaultKind::NotUtf8, at, where, segment);
            return 1;
        }
        if (!IsXmlChar(code)) Report(MarkupFaultKind::Character, at, where, segment, code);
        return length;
    }

    void CheckChars(std::size_t from, std::size_t to, const Place& where, std::size_t segment) {
        while (from < to) from += CharAt(from, where, segment);
    }

    // ---- Names and references -------------------------------------------

    std::string_view NameAt(std::size_t& at) const {
        const std::size_t start = at;
        if (at >= s_.size() || !IsNameStart(s_[at])) return {};
        while (at < s_.size() && IsNameChar(s_[at])) ++at;
        return s_.substr(start, at - start);
    }

    void SkipSpaces(std::size_t& at) const {
        while (at < s_.size() && IsSpace(s_[at])) ++at;
    }

    // The "&" at pos_: a character reference to a character XML allows, or
    // one of the five entities (any entity once the document declares some).
    void Reference(const Place& where, std::size_t segment) {
        std::size_t at = pos_ + 1;
        bool known = false;
        if (at < s_.size() && s_[at] == '#') {
            ++at;
            const bool hex = at < s_.size() && s_[at] == 'x';
            if (hex) ++at;
            const std::size_t digitsFrom = at;
            std::uint32_t code = 0;
            while (at < s_.size() && at - digitsFrom < 8) {
                const char c = s_[at];
                const int digit = c >= '0' && c <= '9'            ? c - '0'
                                  : hex && c >= 'a' && c <= 'f' ? c - 'a' + 10
                                  : hex && c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                                : -1;
                if (digit < 0) break;
                code = code * (hex ? 16u : 10u) + static_cast<std::uint32_t>(digit);
                ++at;
            }
            known = at > digitsFrom && at < s_.size() && s_[at] == ';' && IsXmlChar(code);
        } else {
            const std::string_view name = NameAt(at);
            known = !name.empty() && at < s_.size() && s_[at] == ';' &&
                    (declaresEntities_ || name == "lt" || name == "gt" || name == "amp" || name == "quot" ||
                     name == "apos");
        }
        if (known) {
            pos_ = at + 1;
        } else {
            Report(MarkupFaultKind::Ampersand, pos_, where, segment);
            ++pos_;
        }
    }

    // ---- Content ------------------------------------------------------------

    void Text() {
        const Place where = TextPlace();
        while (pos_ < s_.size() && s_[pos_] != '<') {
            const char c = s_[pos_];
            if (stack_.empty() && !IsSpace(c)) Report(MarkupFaultKind::OutsideRoot, pos_, kOutside, textSegment_);
            if (c == '&') {
                Reference(where, textSegment_);
            } else if (c == ']' && s_.substr(pos_, 3) == "]]>") {
                Report(MarkupFaultKind::Greater, pos_ + 2, where, textSegment_);
                pos_ += 3;
            } else {
                pos_ += CharAt(pos_, where, textSegment_);
            }
        }
    }

    // A "<" that starts no markup: it belongs to the text around it.
    void StrayLess(std::size_t at) {
        if (stack_.empty()) Report(MarkupFaultKind::OutsideRoot, at, kOutside, textSegment_);
        else Report(MarkupFaultKind::Less, at, TextPlace(), textSegment_);
        pos_ = at + 1;
    }

    void Markup() {
        const std::string_view rest = s_.substr(pos_);
        if (rest.starts_with("<!--")) Comment();
        else if (rest.starts_with("<![CDATA[")) Cdata();
        else if (rest.starts_with("<!DOCTYPE") && stack_.empty() && !rootClosed_) Doctype();
        else if (rest.starts_with("<?")) Instruction();
        else if (rest.starts_with("</")) EndTag();
        else StartTag();
    }

    void Comment() {
        const std::size_t start = pos_;
        const Place where{PlaceKind::Comment, {}, {}};
        const std::size_t segment = NewSegment();
        for (pos_ += 4; pos_ < s_.size();) {
            if (s_[pos_] == '-' && pos_ + 1 < s_.size() && s_[pos_ + 1] == '-') {
                if (pos_ + 2 < s_.size() && s_[pos_ + 2] == '>') {
                    pos_ += 3;
                    textSegment_ = NewSegment();
                    return;
                }
                Report(MarkupFaultKind::Hyphens, pos_, where, segment);
                ++pos_;
            } else {
                pos_ += CharAt(pos_, where, segment);
            }
        }
        Report(MarkupFaultKind::Unclosed, start, where, segment);
    }

    void Cdata() {
        const std::size_t start = pos_;
        const Place where{PlaceKind::Cdata, stack_.empty() ? std::string_view() : stack_.back().Name, {}};
        const std::size_t segment = NewSegment();
        if (stack_.empty()) Report(MarkupFaultKind::OutsideRoot, start, where, segment);
        const std::size_t from = start + 9;
        std::size_t end = s_.find("]]>", from);
        const bool packet = !packet_ && !stack_.empty() && stack_.back().Name == "xmpMetadata";
        if (packet) {
            // A "]]>" inside the packet ends the section early; the packet's own
            // check names the text it stands in.
            const std::size_t last = s_.find("]]></xmpMetadata>", from);
            if (last != std::string_view::npos) end = last;
        }
        if (end == std::string_view::npos) {
            Report(MarkupFaultKind::Unclosed, start, where, segment);
            pos_ = s_.size();
            return;
        }
        if (packet) Scanner(s_.substr(from, end - from), LineAt(from), true, check_, namedAtMost_).Run();
        else CheckChars(from, end, where, segment);
        pos_ = end + 3;
        textSegment_ = NewSegment();
    }

    // "<!DOCTYPE ...>", with an internal subset in brackets; one that
    // declares anything makes every entity name acceptable.
    void Doctype() {
        const std::size_t start = pos_;
        std::size_t depth = 0;
        char quote = 0;
        for (std::size_t at = start + 2; at < s_.size(); ++at) {
            const char c = s_[at];
            if (quote != 0) {
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '[') {
                ++depth;
                declaresEntities_ = true;
            } else if (c == ']' && depth > 0) {
                --depth;
            } else if (c == '>' && depth == 0) {
                pos_ = at + 1;
                textSegment_ = NewSegment();
                return;
            }
        }
        Report(MarkupFaultKind::Unclosed, start, {PlaceKind::Doctype, {}, {}}, NewSegment());
        pos_ = s_.size();
    }

    void Instruction() {
        const std::size_t start = pos_;
        const Place where{PlaceKind::Instruction, {}, {}};
        const std::size_t segment = NewSegment();
        const std::size_t end = s_.find("?>", start + 2);
        if (end == std::string_view::npos) {
            Report(MarkupFaultKind::Unclosed, start, where, segment);
            pos_ = s_.size();
            return;
        }
        CheckChars(start + 2, end, where, segment);
        pos_ = end + 2;
        textSegment_ = NewSegment();
    }

    void EndTag() {
        const std::size_t start = pos_;
        std::size_t at = start + 2;
        const std::string_view name = NameAt(at);
        SkipSpaces(at);
        if (name.empty() || at >= s_.size() || s_[at] != '>') return StrayLess(start);
        const auto open = openCount_.find(name);
        if (open == openCount_.end() || open->second == 0) {
            // It closes nothing: the text around it holds "</".
            StrayLess(start);
            pos_ = at + 1;
            return;
        }
        // Elements opened since are tags made of text: "<" in their parent's text.
        while (stack_.back().Name != name) {
            const OpenElement inner = stack_.back();
            Close();
            if (!Repeated(MarkupFaultKind::Less, inner.ParentSegment))
                Record(MarkupFaultKind::Less, inner.Line, TextPlace(), 0);
        }
        Close();
        if (stack_.empty()) rootClosed_ = true;
        pos_ = at + 1;
        textSegment_ = NewSegment();
    }

    void Close() {
        --openCount_[stack_.back().Name];
        stack_.pop_back();
    }

    // An attribute value from `at` to its quote; false when the document
    // ends first. `closing` is where the quote stands.
    bool Value(std::size_t& at, char quote, const Place& where, std::size_t segment, std::size_t& closing) {
        while (at < s_.size() && s_[at] != quote) {
            if (s_[at] == '<') {
                Report(MarkupFaultKind::Less, at, where, segment);
                ++at;
            } else if (s_[at] == '&') {
                pos_ = at;
                Reference(where, segment);
                at = pos_;
            } else {
                at += CharAt(at, where, segment);
            }
        }
        closing = at;
        if (at >= s_.size()) return false;
        ++at;
        return true;
    }

    void StartTag() {
        const std::size_t start = pos_;
        std::size_t at = start + 1;
        const std::string_view name = NameAt(at);
        if (name.empty()) return StrayLess(start);
        const Place element{PlaceKind::Element, name, {}};

        const std::size_t savedSegment = lastSegment_;
        const unsigned savedReported = reported_;
        inTag_ = true;
        pending_.clear();
        CheckChars(start + 1, start + 1 + name.size(), element, NewSegment());
        // The last value read: its attribute, quote, segment and closing quote.
        std::string_view lastAttribute;
        char lastQuote = 0;
        std::size_t lastSegment = 0;
        std::size_t lastClosing = std::string_view::npos;
        bool empty = false;
        bool closed = false;
        while (!closed) {
            const std::size_t spaceFrom = at;
            SkipSpaces(at);
            if (at < s_.size() && s_[at] == '>') {
                ++at;
                closed = true;
                break;
            }
            if (at + 1 < s_.size() && s_[at] == '/' && s_[at + 1] == '>') {
                at += 2;
                closed = empty = true;
                break;
            }
            std::string_view attribute;
            bool ok = at > spaceFrom;
            const std::size_t attributeFrom = at;
            if (ok) ok = !(attribute = NameAt(at)).empty();
            if (ok) SkipSpaces(at), ok = at < s_.size() && s_[at] == '=';
            if (ok) ++at, SkipSpaces(at), ok = at < s_.size() && (s_[at] == '"' || s_[at] == '\'');
            if (!ok && lastClosing == std::string_view::npos) {
                // No attribute read yet: the "<" was text.
                if (at >= s_.size()) break;
                inTag_ = false;
                pending_.clear();
                lastSegment_ = savedSegment;
                reported_ = savedReported;
                return StrayLess(start);
            }
            std::size_t closing = 0;
            if (ok) {
                CheckChars(attributeFrom, attributeFrom + attribute.size(), {PlaceKind::Attribute, name, attribute},
                           NewSegment());
                lastAttribute = attribute;
                lastQuote = s_[at];
                lastSegment = NewSegment();
                ++at;
            } else {
                // The last value went on behind the quote that seemed to end it.
                Report(MarkupFaultKind::Quote, lastClosing, {PlaceKind::Attribute, name, lastAttribute}, lastSegment);
                at = lastClosing + 1;
            }
            if (!Value(at, lastQuote, {PlaceKind::Attribute, name, lastAttribute}, lastSegment, closing)) break;
            lastClosing = closing;
        }
        inTag_ = false;
        if (!closed) {
            // The document ended inside the tag.
            pending_.clear();
            Report(MarkupFaultKind::Unclosed, start, element, NewSegment());
            pos_ = s_.size();
            return;
        }
        if (stack_.empty() && rootClosed_) Report(MarkupFaultKind::OutsideRoot, start, element, NewSegment());
        const std::size_t line = LineAt(start);
        for (const Pending& fault : pending_) Record(fault.Kind, LineAt(fault.Position), fault.Where, fault.Character);
        pending_.clear();
        if (empty) {
            if (stack_.empty()) rootClosed_ = true;
        } else {
            stack_.push_back({name, line, textSegment_});
            ++openCount_[name];
        }
        pos_ = at;
        textSegment_ = NewSegment();
    }

    std::string_view s_;
    MarkupCheck& check_;
    std::size_t namedAtMost_;
    bool packet_;
    std::size_t pos_ = 0;

    std::size_t countedTo_ = 0;
    std::size_t countedLine_;

    std::vector<OpenElement> stack_;
    std::unordered_map<std::string_view, std::size_t> openCount_;
    bool rootClosed_ = false;
    bool declaresEntities_ = false;

    std::size_t segments_ = 0;
    std::size_t textSegment_ = 0;
    std::size_t lastSegment_ = static_cast<std::size_t>(-1);
    unsigned reported_ = 0;
    bool inTag_ = false;
    std::vector<Pending> pending_;
};

std::string CodePointText(std::uint32_t code) {
    std::string digits;
    for (int shift = code > 0xFFFF ? 16 : 8; shift >= 0; shift -= 8)
        digits += HexByte(static_cast<std::uint8_t>((code >> shift) & 0xFF));
    return "U+" + digits;
}

std::string Describe(const MarkupFault& fault, bool recoded) {
    const std::string& place = fault.Place;
    switch (fault.Kind) {
        case MarkupFaultKind::Less: return "unescaped \"<\" in " + place + " (--well-formed escapes it)";
        case MarkupFaultKind::Greater:
            return "unescaped \">\" after \"]]\" in " + place + " (--well-formed escapes it)";
        case MarkupFaultKind::Quote: return "unescaped '\"' in " + place + " (--well-formed escapes it)";
        case MarkupFaultKind::Ampersand: return "\"&\" that starts no reference in " + place;
        case MarkupFaultKind::Hyphens: return "\"--\" inside " + place + " (--well-formed separates it)";
        case MarkupFaultKind::NotUtf8:
            return "bytes that are not UTF-8 in " + place +
                   (recoded ? std::string() : std::string(" (name the session's language with --language)"));
        case MarkupFaultKind::Character:
            return "the character " + CodePointText(fault.Character) + ", which XML does not allow, in " + place;
        case MarkupFaultKind::Unclosed: return place + " is never closed";
        case MarkupFaultKind::OutsideRoot: return place + " stands outside the root element";
    }
    return place;
}

}  // namespace

MarkupCheck CheckMarkup(std::string_view document, std::size_t namedAtMost) {
    MarkupCheck check;
    Scanner(document, 1, false, check, namedAtMost).Run();
    return check;
}

std::vector<Diagnostic> MarkupWarnings(const MarkupCheck& check, bool recoded) {
    std::vector<Diagnostic> warnings;
    for (const MarkupFault& fault : check.Faults) {
        warnings.push_back(Diagnostic{"document line " + std::to_string(fault.Line) +
                                       " is not well-formed XML: " + Describe(fault, recoded), -1, ""});
    }
    if (check.Total > check.Faults.size()) {
        const std::size_t more = check.Total - check.Faults.size();
        warnings.push_back(Diagnostic{"the document has " + std::to_string(more) +
                                      (more == 1 ? " more place that is" : " more places that are") +
                                      " not well-formed XML",
                                  -1, ""});
    }
    return warnings;
}

}  // namespace morvanta

// The check of finished documents: each fault a session's text can bring
// in, named by line and place, and documents that are well-formed left
// without a word.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "services/MarkupCheck.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

Strings Warnings(const std::string& document, bool recoded = false, std::size_t namedAtMost = 10) {
    Strings messages;
    for (const Diagnostic& warning : MarkupWarnings(CheckMarkup(document, namedAtMost), recoded))
        messages.push_back(warning.Message);
    return messages;
}

const std::string kFault = "document line ";

struct Case {
    const char* Title;
    std::string Document;
    Strings Expected;
};

TEST(MarkupCheck, NamesEachFaultByLineAndPlace) {
    const std::string escapes = " (--well-formed escapes it)";
    const std::vector<Case> table{
        {"a well-formed document", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!DOCTYPE sesx>\n<a x='1' y=\"&lt;&#60;&#x3c;\">\n"
         "t &amp; &quot;u&apos; > ]] <b/><![CDATA[ <&> ]]><!-- - - -->\xC3\xA9\xF0\x9F\x8E\xB5</a>\n<!-- c --> \n", {}},
        {"\"<\" in a name", "<s>\n<name>a<b</name>\n</s>",
         {kFault + "2 is not well-formed XML: unescaped \"<\" in the text of <name>" + escapes}},
        {"a name that reads as a start tag", "<s>\n<name>a <b> c</name>\n</s>",
         {kFault + "2 is not well-formed XML: unescaped \"<\" in the text of <name>" + escapes}},
        {"a name that reads as an end tag", "<s>\n<name>a</b></name>\n</s>",
         {kFault + "2 is not well-formed XML: unescaped \"<\" in the text of <name>" + escapes}},
        {"two in one text make one fault", "<s><name>a<b<c</name></s>",
         {kFault + "1 is not well-formed XML: unescaped \"<\" in the text of <name>" + escapes}},
        {"a quote in a value", "<f>\n<file absolutePath=\"C:\\a\"b.wav\" id=\"0\"/>\n</f>",
         {kFault + "2 is not well-formed XML: unescaped '\"' in the attribute absolutePath of <file>" + escapes}},
        {"a quote and a blank in a value", "<f>\n<file absolutePath=\"a\" b.wav\" id=\"0\"/>\n</f>",
         {kFault + "2 is not well-formed XML: unescaped '\"' in the attribute absolutePath of <file>" + escapes}},
        {"\"<\" in a value", "<f><slot name=\"a<b>\"/></f>",
         {kFault + "1 is not well-formed XML: unescaped \"<\" in the attribute name of <slot>" + escapes}},
        {"\"]]>\" in a text", "<s>\n\n<name>a]]>b</name></s>",
         {kFault + "3 is not well-formed XML: unescaped \">\" after \"]]\" in the text of <name>" + escapes}},
        {"ampersands", "<s><n>a & b &foo; &#1;</n>\n<p v=\"&\"/></s>",
         {kFault + "1 is not well-formed XML: \"&\" that starts no reference in the text of <n>",
          kFault + "2 is not well-formed XML: \"&\" that starts no reference in the attribute v of <p>"}},
        {"\"--\" in the closing comment", "<s/>\n<!-- Converted C:\\mix--final.ses (Audition 3.0) --> \n",
         {kFault + "2 is not well-formed XML: \"--\" inside a comment (--well-formed separates it)"}},
        {"a comment that ends in a hyphen", "<s/><!-- a --->",
         {kFault + "1 is not well-formed XML: \"--\" inside a comment (--well-formed separates it)"}},
        {"8-bit bytes", "<s>\n<name>Caf\xE9 \xE9t\xE9</name>\n<file p=\"\xC3\"/></s>",
         {kFault + "2 is not well-formed XML: bytes that are not UTF-8 in the text of <name> (name the "
                   "session's language with --language)",
          kFault + "3 is not well-formed XML: bytes that are not UTF-8 in the attribute p of <file> (name the "
                   "session's language with --language)"}},
        {"overlong forms and surrogates", "<s>\xC0\xBC\xED\xA0\x80</s>",
         {kFault + "1 is not well-formed XML: bytes that are not UTF-8 in the text of <s> (name the session's "
                   "language with --language)"}},
        {"control characters", std::string("<s><name>a\x01</name><!--\x1F--><n>\xEF\xBF\xBE") + '\0' + "</n></s>",
         {kFault + "1 is not well-formed XML: the character U+0001, which XML does not allow, in the text of <name>",
          kFault + "1 is not well-formed XML: the character U+001F, which XML does not allow, in a comment",
          kFault + "1 is not well-formed XML: the character U+FFFE, which XML does not allow, in the text of <n>"}},
        {"unclosed markup", "<s>\n<a>\n<!-- x",
         {kFault + "3 is not well-formed XML: a comment is never closed",
          kFault + "2 is not well-formed XML: the element <a> is never closed",
          kFault + "1 is not well-formed XML: the element <s> is never closed"}},
        {"outside the root", "x<s/>\n<t/>\n<",
         {kFault + "1 is not well-formed XML: text stands outside the root element",
          kFault + "2 is not well-formed XML: the element <t> stands outside the root element",
          kFault + "3 is not well-formed XML: text stands outside the root element"}},
        {"the cue marker packet is XML too",
         "<s>\n<xmpMetadata><![CDATA[<?xpacket begin=\"?\"?>\n<x:xmpmeta>\n<xmpDM:comment>take <2></xmpDM:comment>\n"
         "<xmpDM:name>a]]>b</xmpDM:name>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>]]></xmpMetadata>\n</s>",
         {kFault + "4 is not well-formed XML: unescaped \"<\" in the text of <xmpDM:comment>" + escapes,
          kFault + "5 is not well-formed XML: unescaped \">\" after \"]]\" in the text of <xmpDM:name>" + escapes}},
        {"a CDATA section elsewhere is not", "<s><p><![CDATA[ <2> & ]]></p></s>", {}},
    };
    for (const Case& c : table) EXPECT_EQ(Warnings(c.Document), c.Expected) << c.Title;
}

// A recoded document has had its chance at UTF-8, so no advice follows.
TEST(MarkupCheck, RecodedDocumentsGetNoLanguageAdvice) {
    EXPECT_EQ(Warnings("<s>\xE9</s>", true),
              Strings{kFault + "1 is not well-formed XML: bytes that are not UTF-8 in the text of <s>"});
}

// The first faults are named, the rest counted.
TEST(MarkupCheck, NamesTheFirstFaultsAndCountsTheRest) {
    const std::string names = "<s>\n<n>a<</n>\n<n>b<</n>\n<n>c<</n>\n</s>";
    EXPECT_EQ(Warnings(names, false, 1),
              (Strings{kFault + "2 is not well-formed XML: unescaped \"<\" in the text of <n> (--well-formed escapes it)",
                       "the document has 2 more places that are not well-formed XML"}));
    EXPECT_EQ(Warnings(names, false, 2).back(), "the document has 1 more place that is not well-formed XML");
    const MarkupCheck check = CheckMarkup(names, 0);
    EXPECT_EQ(check.Total, 3u);
    EXPECT_TRUE(check.Faults.empty());
}

// Whatever the bytes, the check ends and names lines inside the document.
TEST(MarkupCheck, EveryCutOfADocumentIsChecked) {
    const std::string document =
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!DOCTYPE s [<!ENTITY e \"x\">]>\n<s a=\"1\" b='&e;'>\n<n>&e; <\xE9</n>"
        "<![CDATA[x]]><!-- - -->\n<xmpMetadata><![CDATA[<p>\n<q>&</q></p>]]></xmpMetadata>\n</s>\n";
    for (std::size_t length = 0; length <= document.size(); ++length) {
        const std::string cut = document.substr(0, length);
        const MarkupCheck check = CheckMarkup(cut, 100);
        EXPECT_EQ(check.Total, check.Faults.size()) << length;
        for (const MarkupFault& fault : check.Faults) EXPECT_LE(fault.Line, 9u) << length;
    }
    // The whole document has the three faults its text holds: the stray "<" and
    // its 8-bit byte, and the "&" in the packet.
    EXPECT_EQ(CheckMarkup(document).Total, 3u);
}

}  // namespace
}  // namespace morvanta::testing

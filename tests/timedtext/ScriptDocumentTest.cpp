#include "../tree/TreeTestSupport.h"
#include "ScriptTestSupport.h"

#include "timedtext/ScriptDocument.h"

#include <zephmetadata/Access.h>
#include <zephui/QtDrawing.h>

#include <gtest/gtest.h>

using namespace scripttest;
using treetest::ToStd;
using zephmetadataui::timedtext::BreakIntoLines;
using zephmetadataui::timedtext::LoadScript;
using zephmetadataui::timedtext::MakeTimedTextFont;
using zephmetadataui::timedtext::ScriptDialog;
using zephmetadataui::timedtext::WordWidthCache;

namespace
{

// "speaker: speech" a record, one per line.
std::string Loaded(std::string const& body)
{
    auto const provider = ScriptProvider(body);
    std::vector<ScriptDialog> dialogs;
    zephmetadata::MetaDataReadAccess const access(provider);
    LoadScript(*access, dialogs);
    std::string out;
    for (ScriptDialog const& record : dialogs)
        out += ToStd(record.character) + ": " + ToStd(record.dialog) + "\n";
    return out;
}

std::string Item(std::string const& inside)
{
    return "<rdf:li rdf:parseType=\"Resource\">" + inside + "</rdf:li>";
}

class ScriptDocumentTest : public treetest::TreeTest
{
};

} // namespace

TEST_F(ScriptDocumentTest, LoadReadsTheSpeechesAsParagraphs)
{
    struct Case
    {
        char const* what;
        std::string body;
        char const* loaded;
    };
    std::vector<Case> const cases = {
        {"no dialogue", "<dc:format>text/plain</dc:format>", ""},
        {"in file order", DialogueBody({{"ELIN", "One."}, {"TOMAS", "Two."}}),
         "ELIN: One.\nTOMAS: Two.\n"},
        {"one speaker in a row joins, one blank each time",
         DialogueBody({{"ELIN", "One."}, {"ELIN", "Two."}, {"ELIN", "Three."}}),
         "ELIN: One. Two. Three.\n"},
        {"A, B, A stay three", DialogueBody({{"A", "x"}, {"B", "y"}, {"A", "z"}}),
         "A: x\nB: y\nA: z\n"},
        {"an empty item is skipped, a name alone is kept",
         DialogueBody({{"A", "x"}, {"", ""}, {"B", ""}, {"", "anonymous"}}),
         "A: x\nB: \n: anonymous\n"},
        {"a sequence that is one text has no items",
         "<xmpScript:dialogSequence>ELIN: hello</xmpScript:dialogSequence>", ""},
        {"an item that is no structure ends the load",
         "<xmpScript:dialogSequence><rdf:Seq>" +
             Item("<xmpScript:character>A</xmpScript:character>"
                  "<xmpScript:dialog>kept</xmpScript:dialog>") +
             "<rdf:li>plain text</rdf:li>" +
             Item("<xmpScript:character>B</xmpScript:character>"
                  "<xmpScript:dialog>never read</xmpScript:dialog>") +
             "</rdf:Seq></xmpScript:dialogSequence>",
         "A: kept\n"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(Loaded(c.body), c.loaded) << c.what;
}

TEST_F(ScriptDocumentTest, LinesBreakAtTheLastBlankThatFitsOrBetweenLetters)
{
    WordWidthCache widths(MakeTimedTextFont(zephui::SharedSupplierForScale(1.0f)));
    struct Case
    {
        char const* text;
        char const* firstRoom; // as wide as this text, and half a pixel
        char const* room;
        char const* lines; // joined by "|"
    };
    Case const cases[] = {
        {"", "a", "a", ""},
        {"one two three", "one two three", "one two three", "one two three"},
        {"one two three", "one two", "one two", "one two| three"},
        {"one two three", "one", "one two three", "one| two three"},
        {"aaaaaaaaaa", "aaaa", "aaaa", "aaaa|aaaa|aa"},
        // A word too wide with a blank after it goes a character a line.
        {"aaaaaaaaaa a", "aaaa", "aaaa", "a|a|a|a|a|a|aaaa| a"},
        // The blank before a word too wide is a line of its own.
        {"aa aaaaaaaa", "aaaa", "aaaa", "aa| |aaaa|aaaa"},
        {"a", "", "", "a"},
    };
    for (Case const& c : cases)
    {
        std::vector<zephcore::UTF16String> lines;
        BreakIntoLines(widths, zephcore::UTF8to16(std::string_view(c.text)),
                       Width(c.firstRoom) + 0.5f, Width(c.room) + 0.5f, lines);
        std::string joined;
        for (std::size_t i = 0; i < lines.size(); ++i)
            joined += std::string(i > 0 ? "|" : "") + ToStd(lines[i]);
        EXPECT_EQ(joined, c.lines) << c.text << " in " << c.room;
    }
}

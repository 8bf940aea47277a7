#include "TemporalTestSupport.h"

#include "timedtext/WordMarkers.h"

#include <zephmetadataui/WordInfo.h>

#include <gtest/gtest.h>

using temporaltest::Marker;
using temporaltest::Opened;
using temporaltest::TickTime;
using temporaltest::Track;
using temporaltest::TracksPacket;
using zephmetadataui::WordInfo;
using zephmetadataui::WordToMarker;
using zephmetadataui::timedtext::MarkerToWord;

namespace
{

std::string U8(zephcore::UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

// "text|primary|secondary|probability|speaker"
std::string Flat(WordInfo const& word)
{
    return U8(word.text) + "|" + U8(word.primary) + "|" + U8(word.secondary) + "|" +
           std::to_string(word.probability) + "|" + U8(word.speaker);
}

} // namespace

TEST(WordMarkersTest, MarkerReadsIntoAWordAsWrittenInThePacket)
{
    struct Case
    {
        char const* fields;
        char const* word;
    };
    std::vector<Case> const cases = {
        {"<xmpDM:name>hi</xmpDM:name><xmpDM:probability>-1</xmpDM:probability>", "hi|||-1|"},
        {"<xmpDM:name>hi</xmpDM:name><xmpDM:probability>0</xmpDM:probability>", "hi|||0|"},
        {"<xmpDM:name>hi</xmpDM:name>", "hi|||0|"},
        {"<xmpDM:probability>0.85</xmpDM:probability>", "|||0|"},
        {"<xmpDM:probability>+87</xmpDM:probability>", "|||87|"},
        {"<xmpDM:probability>2147483648</xmpDM:probability>", "|||0|"},
        {"<xmpDM:probability>-2147483648</xmpDM:probability>", "|||-2147483648|"},
        {"<xmpDM:probability>12 </xmpDM:probability>", "|||0|"},
        {"<xmpDM:name>w\xC3\xB6rld</xmpDM:name><xmpDM:speaker>\xC3\x85SA</xmpDM:speaker>",
         "w\xC3\xB6rld|||0|\xC3\x85SA"},
        {"<xmpDM:cuePointParams><rdf:Seq>"
         "<rdf:li xmpDM:key=\"secondary\" xmpDM:value=\"two\"/>"
         "<rdf:li xmpDM:key=\"other\" xmpDM:value=\"x\"/>"
         "<rdf:li xmpDM:key=\"primary\" xmpDM:value=\"one\"/>"
         "<rdf:li xmpDM:key=\"primary\" xmpDM:value=\"later\"/>"
         "</rdf:Seq></xmpDM:cuePointParams>",
         "|later|two|0|"},
    };
    for (Case const& c : cases)
    {
        Opened opened(TracksPacket(
            Track("<xmpDM:trackType>Speech</xmpDM:trackType>",
                  Marker("<xmpDM:startTime>5</xmpDM:startTime>" + std::string(c.fields)))));
        auto& track = opened.TrackAt(0);
        ASSERT_NE(track.MarkerListIteratorBegin(), track.MarkerListIteratorEnd()) << c.fields;
        WordInfo const word = MarkerToWord(track.MarkerListIteratorBegin()->second);
        EXPECT_EQ(Flat(word), c.word) << c.fields;
        EXPECT_EQ(word.startTime, temporaltest::Seconds(5.0)) << c.fields;
    }
}

TEST(WordMarkersTest, WordBecomesASpeechMarkerThatReadsBackAsTheSameWord)
{
    auto const u16 = [](char const* text) { return zephcore::UTF8to16(std::string_view(text)); };
    struct Case
    {
        WordInfo word;
        std::size_t params;
    };
    std::vector<Case> const cases = {
        {{{}, {}, u16("plain"), -1, TickTime(5), TickTime(7), u16("ANN")}, 0},
        {{{}, {}, u16("zero"), 0, TickTime(0), TickTime(0), {}}, 0},
        {{u16("one"), {}, u16("\xC3\xA5ngest"), 42, TickTime(-3), TickTime(1), u16("B")}, 1},
        {{{}, u16("two"), u16("x"), 1, TickTime(9), TickTime(2), {}}, 1},
        {{u16("one"), u16("two"), u16("\xE2\x82\xAC"), 99, TickTime(1), TickTime(1), {}}, 2},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(Flat(c.word));
        zephtemporalxmp::XMPTemporalMetadataInfo const marker = WordToMarker(c.word);
        EXPECT_EQ(temporaltest::Field(marker, zephtemporalxmp::kInfoFieldType), "Speech");
        EXPECT_EQ(temporaltest::Field(marker, zephtemporalxmp::kInfoFieldProbability),
                  std::to_string(c.word.probability));
        ASSERT_EQ(marker.cuePointParams.size(), c.params);
        if (c.params == 2)
        {
            std::string key;
            marker.cuePointParams.front().GetKey(&key);
            EXPECT_EQ(key, "primary") << "primary comes first";
        }
        EXPECT_EQ(MarkerToWord(marker), c.word);
    }
}

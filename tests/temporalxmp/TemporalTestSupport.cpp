#include "TemporalTestSupport.h"

#include <exempi/xmp.h>

#include <sstream>

namespace temporaltest
{

namespace xmp = zephmetadata::xmp;

std::string SamplePacket()
{
    std::string const speech = Track(
        "<xmpDM:trackName>Transcript</xmpDM:trackName><xmpDM:trackType>Speech</xmpDM:trackType>"
        "<xmpDM:frameRate>f25</xmpDM:frameRate>",
        Marker("<xmpDM:startTime>50</xmpDM:startTime><xmpDM:duration>10</xmpDM:duration>"
               "<xmpDM:name>Hello</xmpDM:name><xmpDM:type>Speech</xmpDM:type>"
               "<xmpDM:speaker>Ann</xmpDM:speaker><xmpDM:probability>87</xmpDM:probability>"
               "<xmpDM:cuePointParams><rdf:Seq>"
               "<rdf:li xmpDM:key=\"primary\" xmpDM:value=\"Hallo\"/>"
               "<rdf:li xmpDM:key=\"secondary\" xmpDM:value=\"Hullo\"/>"
               "</rdf:Seq></xmpDM:cuePointParams>") +
            Marker("<xmpDM:startTime>75</xmpDM:startTime><xmpDM:duration>5</xmpDM:duration>"
                   "<xmpDM:name>w\xC3\xB6rld</xmpDM:name><xmpDM:speaker>Ann</xmpDM:speaker>"
                   "<xmpDM:probability>0.85</xmpDM:probability>"
                   "<xmpDM:comment>a note</xmpDM:comment><xmpDM:target>t1</xmpDM:target>"
                   "<xmpDM:location rdf:resource=\"http://example.com/at\"/>"
                   "<xmpDM:cuePointType>Navigation</xmpDM:cuePointType>"
                   "<my:extra xmlns:my=\"http://example.com/my/\">kept</my:extra>") +
            Marker("<xmpDM:startTime>200f50</xmpDM:startTime>"
                   "<xmpDM:duration>25f50</xmpDM:duration>"
                   "<xmpDM:name>later</xmpDM:name><xmpDM:speaker>Bo</xmpDM:speaker>"));
    std::string const cues =
        Track("<xmpDM:trackName>Cues</xmpDM:trackName><xmpDM:trackType>Cue</xmpDM:trackType>"
              "<xmpDM:frameRate>f48000</xmpDM:frameRate>",
              Marker("<xmpDM:startTime>96000</xmpDM:startTime><xmpDM:name>cue</xmpDM:name>"
                     "<xmpDM:cuePointParams><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
                     "<xmpDM:key>k</xmpDM:key><xmpDM:value>v</xmpDM:value>"
                     "<my:x xmlns:my=\"http://example.com/my/\">1</my:x>"
                     "</rdf:li></rdf:Bag></xmpDM:cuePointParams>"));
    std::string const chapters = Track(
        "<xmpDM:trackName>Chapters</xmpDM:trackName><xmpDM:trackType>Chapter</xmpDM:trackType>"
        "<my:color xmlns:my=\"http://example.com/my/\">red</my:color>",
        Marker("<xmpDM:startTime>2</xmpDM:startTime><xmpDM:duration>1.5</xmpDM:duration>"
               "<xmpDM:name>Intro</xmpDM:name>"));
    return TracksPacket(
        speech + cues + chapters,
        "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">Interview</rdf:li></rdf:Alt></dc:title>"
        "<xmpDM:shotName>take 2</xmpDM:shotName>"
        "<xmpMM:DocumentID>xmp.did:D</xmpMM:DocumentID>"
        "<xmpMM:InstanceID>xmp.iid:A</xmpMM:InstanceID>"
        "<xmpMM:History><rdf:Seq>"
        "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>created</stEvt:action>"
        "<stEvt:instanceID>xmp.iid:0</stEvt:instanceID></rdf:li>"
        "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>saved</stEvt:action>"
        "<stEvt:instanceID>xmp.iid:A</stEvt:instanceID><stEvt:changed>/metadata</stEvt:changed>"
        "</rdf:li></rdf:Seq></xmpMM:History>");
}

std::string Words(XMPTrack& track)
{
    std::ostringstream text;
    for (auto marker = track.MarkerListIteratorBegin(); marker != track.MarkerListIteratorEnd();
         ++marker)
    {
        text << (text.tellp() > 0 ? "; " : "")
             << Field(marker->second, zephtemporalxmp::kInfoFieldName) << ' '
             << marker->second.startTime.ToSeconds() << '+' << marker->second.duration.ToSeconds();
    }
    return text.str();
}

std::string Tracks(XMPDocOpsTemporal& ops)
{
    std::string text;
    for (auto track = ops.TrackListIteratorBegin(); track != ops.TrackListIteratorEnd(); ++track)
    {
        std::string type, name, rate;
        track->GetTrackType(&type);
        track->GetTrackName(&name);
        track->GetFrameRate(&rate);
        text += type + "/" + name + "/" + rate + ": " + Words(*track) + "\n";
    }
    return text;
}

std::string LaterTracks(__XMPMeta__* meta)
{
    std::string text;
    int const count = xmp::CountArrayItems(meta, modeltest::kDM, "Tracks");
    for (int i = 2; i <= count; ++i)
        text += Subtree(meta, modeltest::kDM, xmp::ComposeArrayItemPath("Tracks", i));
    return text;
}

XMPTemporalMetadataInfo Word(char const* name, TickTime start, TickTime duration,
                             std::vector<XMPCuePointParam> const& cues)
{
    return XMPTemporalMetadataInfo(name, "", start, duration, "Speech", "", "", "", cues, "Ann",
                                   "-1", nullptr, nullptr);
}

std::string Subtree(__XMPMeta__* meta, char const* ns, std::string const& path)
{
    std::vector<xmp::Node> const nodes = xmp::ReadSubtree(meta, ns, path.c_str());
    if (nodes.empty())
        return std::string();
    std::size_t const root = nodes.front().path.size();
    std::string text;
    for (xmp::Node const& node : nodes)
    {
        text += node.path.substr(root) + "=" + node.value + "#" +
                std::to_string(node.options & (xmp::kOptionCompositeMask | xmp::kOptionIsURI |
                                               xmp::kOptionIsQualifier)) +
                "\n";
    }
    return text;
}

std::multiset<std::string> MarkerItems(__XMPMeta__* meta, int track)
{
    std::string const markers = "Tracks[" + std::to_string(track) + "]/xmpDM:markers";
    std::multiset<std::string> items;
    int const count = xmp::CountArrayItems(meta, modeltest::kDM, markers.c_str());
    for (int i = 1; i <= count; ++i)
        items.insert(Subtree(meta, modeltest::kDM, xmp::ComposeArrayItemPath(markers, i)));
    return items;
}

std::size_t Kept(std::multiset<std::string> const& before, std::multiset<std::string> const& after)
{
    std::size_t kept = 0;
    for (std::string const& item : before)
        kept += after.count(item) > 0 ? 1 : 0;
    return kept;
}

std::map<std::string, std::string> OtherProperties(__XMPMeta__* meta)
{
    std::map<std::string, std::string> properties;
    xmp::Iterator iterator(meta, nullptr, nullptr);
    xmp::Node node;
    while (iterator.Next(node))
    {
        bool const skipped =
            (node.schemaNamespace == modeltest::kDM && node.path == "xmpDM:Tracks") ||
            (node.schemaNamespace == modeltest::kMM &&
             (node.path == "xmpMM:InstanceID" || node.path == "xmpMM:History"));
        if (skipped)
        {
            iterator.SkipSubtree();
            continue;
        }
        properties[node.schemaNamespace + " " + node.path] =
            node.value + "#" + std::to_string(node.options);
    }
    return properties;
}

std::string Get(__XMPMeta__* meta, char const* ns, std::string const& path)
{
    xmp::XmpString value;
    if (!xmp_get_property(meta, ns, path.c_str(), value.Get(), nullptr))
        return std::string();
    return value.Str();
}

} // namespace temporaltest

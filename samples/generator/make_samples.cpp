// Writes the sample media files of samples/ from content made here: a photo
// with IPTC, EXIF and rights, an interview recording with a speech track of
// about 2,000 timed words, a storyboard frame with a script's dialogue, a
// sidecar, and a sidecar with the dialogue of three scenes of the film's script. With
// --speech-markers N FILE it writes a sidecar whose speech track holds N words, for benchmarks.
//
//     make_samples OUTPUT_FOLDER
//     make_samples --speech-markers 10000 big.xmp

#include "SampleText.h"

#include <exempi/xmp.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr std::int64_t kTicksPerSecond = 254016000000LL;

std::string Escape(std::string const& text)
{
    std::string out;
    for (char c : text)
    {
        switch (c)
        {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string LangAlt(std::string const& name, std::string const& text)
{
    return "<" + name + "><rdf:Alt><rdf:li xml:lang=\"x-default\">" + Escape(text) +
           "</rdf:li></rdf:Alt></" + name + ">\n";
}

std::string List(std::string const& name, char const* kind, std::vector<std::string> const& items)
{
    std::string out = "<" + name + "><rdf:" + kind + ">";
    for (auto const& item : items)
        out += "<rdf:li>" + Escape(item) + "</rdf:li>";
    return out + "</rdf:" + kind + "></" + name + ">\n";
}

std::string Simple(std::string const& name, std::string const& value)
{
    return "<" + name + ">" + Escape(value) + "</" + name + ">\n";
}

std::string Packet(std::string const& body)
{
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
           "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
           "<rdf:Description rdf:about=\"\"\n"
           " xmlns:dc=\"http://purl.org/dc/elements/1.1/\"\n"
           " xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\"\n"
           " xmlns:xmpRights=\"http://ns.adobe.com/xap/1.0/rights/\"\n"
           " xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\"\n"
           " xmlns:stEvt=\"http://ns.adobe.com/xap/1.0/sType/ResourceEvent#\"\n"
           " xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\"\n"
           " xmlns:xmpScript=\"http://ns.adobe.com/xmp/1.0/Script/\"\n"
           " xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\"\n"
           " xmlns:Iptc4xmpCore=\"http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/\"\n"
           " xmlns:Iptc4xmpExt=\"http://iptc.org/std/Iptc4xmpExt/2008-02-29/\"\n"
           " xmlns:exif=\"http://ns.adobe.com/exif/1.0/\"\n"
           " xmlns:tiff=\"http://ns.adobe.com/tiff/1.0/\"\n"
           " xmlns:aux=\"http://ns.adobe.com/exif/1.0/aux/\"\n"
           " xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\">\n" +
           body + "</rdf:Description>\n</rdf:RDF>\n</x:xmpmeta>\n";
}

std::string History(std::string const& when, std::string const& agent)
{
    return "<xmpMM:History><rdf:Seq>"
           "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>created</stEvt:action>"
           "<stEvt:instanceID>xmp.iid:5b1c0e6a-0001-4c1e-9a52-7f1a2b3c4d01</stEvt:instanceID>"
           "<stEvt:when>" +
           when + "</stEvt:when><stEvt:softwareAgent>" + agent +
           "</stEvt:softwareAgent></rdf:li>"
           "<rdf:li rdf:parseType=\"Resource\"><stEvt:action>saved</stEvt:action>"
           "<stEvt:instanceID>xmp.iid:5b1c0e6a-0002-4c1e-9a52-7f1a2b3c4d02</stEvt:instanceID>"
           "<stEvt:when>" +
           when + "</stEvt:when><stEvt:softwareAgent>" + agent +
           "</stEvt:softwareAgent><stEvt:changed>/metadata</stEvt:changed></rdf:li>"
           "</rdf:Seq></xmpMM:History>\n";
}

std::string PhotoPacket()
{
    std::string b;
    b += LangAlt("dc:title", "Harbour at first light");
    b += List("dc:creator", "Seq", {"Ines Carvalho"});
    b += LangAlt("dc:description",
                 "Fishing boats leave the old harbour of Porto Velho at sunrise, seen from the "
                 "northern breakwater. The lighthouse on the point is still lit.");
    b += List("dc:subject", "Bag",
              {"harbour", "sunrise", "fishing boats", "lighthouse", "coast", "morning"});
    b += LangAlt("dc:rights", "(c) 2026 Ines Carvalho. All rights reserved.");
    b += Simple("dc:format", "image/jpeg");
    b += Simple("xmp:CreateDate", "2026-04-18T06:42:13+01:00");
    b += Simple("xmp:ModifyDate", "2026-04-19T21:05:00+01:00");
    b += Simple("xmp:MetadataDate", "2026-04-19T21:05:00+01:00");
    b += Simple("xmp:CreatorTool", "zephmetadataui sample maker");
    b += Simple("xmp:Rating", "4");
    b += Simple("xmp:Label", "Selected");
    b += Simple("xmpRights:Marked", "True");
    b += Simple("xmpRights:WebStatement", "https://example.org/licensing/harbour-first-light");
    b += LangAlt("xmpRights:UsageTerms", "Editorial use only. No alterations beyond cropping.");
    b += List("xmpRights:Owner", "Bag", {"Ines Carvalho"});
    b += Simple("xmpMM:DocumentID", "xmp.did:5b1c0e6a-0000-4c1e-9a52-7f1a2b3c4d00");
    b += Simple("xmpMM:InstanceID", "xmp.iid:5b1c0e6a-0002-4c1e-9a52-7f1a2b3c4d02");
    b += Simple("xmpMM:OriginalDocumentID", "xmp.did:5b1c0e6a-0000-4c1e-9a52-7f1a2b3c4d00");
    b += History("2026-04-19T21:05:00+01:00", "zephmetadataui sample maker");
    b += Simple("photoshop:Headline", "Boats head out as the season opens");
    b += Simple("photoshop:City", "Porto Velho");
    b += Simple("photoshop:State", "Costa Norte");
    b += Simple("photoshop:Country", "Portugal");
    b += Simple("photoshop:Credit", "Ines Carvalho / Coastline Pictures");
    b += Simple("photoshop:Source", "Coastline Pictures");
    b += Simple("photoshop:Instructions", "Credit required. Contact the agency for print use.");
    b += Simple("photoshop:DateCreated", "2026-04-18T06:42:13+01:00");
    b += Simple("photoshop:AuthorsPosition", "Staff photographer");
    b += Simple("photoshop:CaptionWriter", "R. Almeida");
    b += Simple("photoshop:Urgency", "5");
    b += Simple("Iptc4xmpCore:Location", "Northern breakwater");
    b += Simple("Iptc4xmpCore:CountryCode", "PRT");
    b += Simple("Iptc4xmpCore:IntellectualGenre", "Feature");
    b += List("Iptc4xmpCore:Scene", "Bag", {"011000", "011200"});
    b += List("Iptc4xmpCore:SubjectCode", "Bag", {"04001000", "15000000"});
    b += "<Iptc4xmpCore:CreatorContactInfo rdf:parseType=\"Resource\">"
         "<Iptc4xmpCore:CiAdrExtadr>Rua do Cais 14</Iptc4xmpCore:CiAdrExtadr>"
         "<Iptc4xmpCore:CiAdrCity>Porto Velho</Iptc4xmpCore:CiAdrCity>"
         "<Iptc4xmpCore:CiAdrPcode>4490-512</Iptc4xmpCore:CiAdrPcode>"
         "<Iptc4xmpCore:CiAdrCtry>Portugal</Iptc4xmpCore:CiAdrCtry>"
         "<Iptc4xmpCore:CiEmailWork>ines@example.org</Iptc4xmpCore:CiEmailWork>"
         "<Iptc4xmpCore:CiTelWork>+351 200 000 000</Iptc4xmpCore:CiTelWork>"
         "<Iptc4xmpCore:CiUrlWork>https://example.org/ines</Iptc4xmpCore:CiUrlWork>"
         "</Iptc4xmpCore:CreatorContactInfo>\n";
    b += List("Iptc4xmpExt:PersonInImage", "Bag", {"Joaquim Reis", "Ana Reis"});
    b += Simple("Iptc4xmpExt:Event", "Opening of the sardine season");
    b += Simple("Iptc4xmpExt:DigitalSourceType",
                "http://cv.iptc.org/newscodes/digitalsourcetype/digitalCapture");
    b += "<Iptc4xmpExt:LocationCreated><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
         "<Iptc4xmpExt:Sublocation>Northern breakwater</Iptc4xmpExt:Sublocation>"
         "<Iptc4xmpExt:City>Porto Velho</Iptc4xmpExt:City>"
         "<Iptc4xmpExt:ProvinceState>Costa Norte</Iptc4xmpExt:ProvinceState>"
         "<Iptc4xmpExt:CountryName>Portugal</Iptc4xmpExt:CountryName>"
         "<Iptc4xmpExt:CountryCode>PRT</Iptc4xmpExt:CountryCode>"
         "</rdf:li></rdf:Bag></Iptc4xmpExt:LocationCreated>\n";
    b += "<Iptc4xmpExt:ArtworkOrObject><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
         "<Iptc4xmpExt:AOTitle><rdf:Alt><rdf:li xml:lang=\"x-default\">Lighthouse of the "
         "point</rdf:li>"
         "<rdf:li xml:lang=\"pt-PT\">Farol da ponta</rdf:li></rdf:Alt></Iptc4xmpExt:AOTitle>"
         "<Iptc4xmpExt:AODateCreated>1882</Iptc4xmpExt:AODateCreated>"
         "<Iptc4xmpExt:AOCreator><rdf:Seq><rdf:li>Unknown "
         "builder</rdf:li></rdf:Seq></Iptc4xmpExt:AOCreator>"
         "</rdf:li></rdf:Bag></Iptc4xmpExt:ArtworkOrObject>\n";
    b += Simple("tiff:Make", "Velcam");
    b += Simple("tiff:Model", "V-7 Mark II");
    b += Simple("tiff:Orientation", "1");
    b += Simple("tiff:ImageWidth", "960");
    b += Simple("tiff:ImageLength", "640");
    b += Simple("exif:ExposureTime", "1/250");
    b += Simple("exif:FNumber", "8/1");
    b += Simple("exif:ExposureProgram", "3");
    b += List("exif:ISOSpeedRatings", "Seq", {"200"});
    b += Simple("exif:FocalLength", "35/1");
    b += Simple("exif:FocalLengthIn35mmFilm", "35");
    b += Simple("exif:DateTimeOriginal", "2026-04-18T06:42:13+01:00");
    b += Simple("exif:MeteringMode", "5");
    b += Simple("exif:WhiteBalance", "0");
    b += Simple("exif:PixelXDimension", "960");
    b += Simple("exif:PixelYDimension", "640");
    b += "<exif:Flash "
         "rdf:parseType=\"Resource\"><exif:Fired>False</exif:Fired><exif:Return>0</exif:Return>"
         "<exif:Mode>2</exif:Mode><exif:Function>False</exif:Function><exif:RedEyeMode>False</"
         "exif:RedEyeMode>"
         "</exif:Flash>\n";
    b += Simple("exif:GPSLatitude", "41,22.416N");
    b += Simple("exif:GPSLongitude", "8,45.318W");
    b += Simple("exif:GPSAltitude", "12/1");
    b += Simple("exif:GPSAltitudeRef", "0");
    b += Simple("exif:GPSVersionID", "2.3.0.0");
    b += Simple("aux:Lens", "35mm f/1.8");
    b += Simple("aux:SerialNumber", "V7M2-004211");
    return Packet(b);
}

struct Word
{
    std::string text;
    std::string speaker;
    std::int64_t start = 0;
    std::int64_t duration = 0;
    int probability = 0;
    std::string primary;
    std::string secondary;
};

// The interview, repeated as needed, timed at a steady speaking pace.
std::vector<Word> TimedWords(std::size_t count)
{
    std::vector<Word> words;
    std::uint32_t seed = 20260418;
    auto const next = [&seed]
    {
        seed = seed * 1664525u + 1013904223u;
        return seed >> 8;
    };
    double seconds = 1.5;
    std::string lastSpeaker;
    while (words.size() < count)
    {
        for (auto const& speech : samples::InterviewSpeeches())
        {
            if (speech.speaker != lastSpeaker)
                seconds += 0.6;
            lastSpeaker = speech.speaker;
            std::istringstream in(speech.text);
            std::string token;
            while (in >> token && words.size() < count)
            {
                Word word;
                word.text = token;
                word.speaker = speech.speaker;
                double const length = 0.16 + 0.045 * double(token.size());
                word.start = std::int64_t(std::llround(seconds * kTicksPerSecond));
                word.duration = std::int64_t(std::llround(length * kTicksPerSecond));
                word.probability = 55 + int(next() % 45);
                std::string bare = token;
                while (!bare.empty() && std::ispunct(static_cast<unsigned char>(bare.back())))
                    bare.pop_back();
                for (auto const& reading : samples::AlternativeReadings())
                {
                    if (bare == reading[0])
                    {
                        word.primary = reading[1];
                        word.secondary = reading[2];
                        word.probability = 40 + int(next() % 30);
                    }
                }
                seconds +=
                    length + 0.07 + (token.back() == '.' || token.back() == '?' ? 0.35 : 0.0);
                words.push_back(word);
            }
            if (words.size() >= count)
                break;
        }
    }
    return words;
}

std::string SpeechTrack(std::vector<Word> const& words)
{
    std::string b = "<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\">"
                    "<xmpDM:trackName>Speech transcript</xmpDM:trackName>"
                    "<xmpDM:trackType>Speech</xmpDM:trackType>"
                    "<xmpDM:frameRate>f254016000000</xmpDM:frameRate>"
                    "<xmpDM:markers><rdf:Seq>\n";
    for (auto const& w : words)
    {
        b += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:name>" + Escape(w.text) +
             "</xmpDM:name>"
             "<xmpDM:startTime>" +
             std::to_string(w.start) +
             "</xmpDM:startTime>"
             "<xmpDM:duration>" +
             std::to_string(w.duration) +
             "</xmpDM:duration>"
             "<xmpDM:type>Speech</xmpDM:type>"
             "<xmpDM:speaker>" +
             Escape(w.speaker) +
             "</xmpDM:speaker>"
             "<xmpDM:probability>" +
             std::to_string(w.probability) + "</xmpDM:probability>";
        if (!w.primary.empty())
        {
            b +=
                "<xmpDM:cuePointParams><rdf:Seq>"
                "<rdf:li rdf:parseType=\"Resource\"><xmpDM:key>primary</xmpDM:key><xmpDM:value>" +
                Escape(w.primary) +
                "</xmpDM:value></rdf:li>"
                "<rdf:li rdf:parseType=\"Resource\"><xmpDM:key>secondary</xmpDM:key><xmpDM:value>" +
                Escape(w.secondary) + "</xmpDM:value></rdf:li></rdf:Seq></xmpDM:cuePointParams>";
        }
        b += "</rdf:li>\n";
    }
    return b + "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>\n";
}

std::string InterviewPacket(std::vector<Word> const& words, double seconds)
{
    std::string b;
    b += LangAlt("dc:title", "The keeper's granddaughter (interview, raw)");
    b += List("dc:creator", "Seq", {"Coastline Pictures"});
    b += LangAlt(
        "dc:description",
        "Interview with the restorer of the lighthouse on the point, recorded on location.");
    b += List("dc:subject", "Bag", {"interview", "lighthouse", "restoration", "oral history"});
    b += Simple("xmp:CreateDate", "2026-05-02T10:15:00+01:00");
    b += Simple("xmpMM:DocumentID", "xmp.did:7d2f4a10-0000-41b2-8e6c-2a9b8c7d6e00");
    b += Simple("xmpMM:InstanceID", "xmp.iid:7d2f4a10-0001-41b2-8e6c-2a9b8c7d6e01");
    b += Simple("xmpDM:artist", "Mara Lindqvist");
    b += Simple("xmpDM:album", "Lights of the North Coast");
    b += Simple("xmpDM:genre", "Documentary");
    b += Simple("xmpDM:scene", "Interview 3");
    b += Simple("xmpDM:shotName", "Lantern room, two-shot");
    b += Simple("xmpDM:logComment",
                "Wind noise between 04:10 and 04:30. Second take of the lens question is better.");
    b += Simple("xmpDM:audioSampleRate", "2000");
    b += Simple("xmpDM:audioSampleType", "8Int");
    b += Simple("xmpDM:audioChannelType", "Mono");
    b += "<xmpDM:duration rdf:parseType=\"Resource\"><xmpDM:value>" +
         std::to_string(std::llround(seconds * 2000)) +
         "</xmpDM:value><xmpDM:scale>1/2000</xmpDM:scale></xmpDM:duration>\n";
    b += SpeechTrack(words);
    return Packet(b);
}

std::string ScriptPacket()
{
    std::string b;
    b += LangAlt("dc:title", "Storm night, scene 12, storyboard frame 3");
    b += List("dc:creator", "Seq", {"Coastline Pictures story department"});
    b += Simple("xmp:CreateDate", "2026-06-10T16:00:00+01:00");
    b += Simple("xmpDM:scene", "12");
    b += Simple("xmpDM:shotNumber", "3");
    b += Simple("xmpDM:projectName", "Storm Night");
    b += Simple("xmpScript:sceneSetting", "INT. KEEPER'S COTTAGE - NIGHT");
    b += Simple("xmpScript:sceneCharacteristics", "Storm outside; oil lamp light only");
    b += "<xmpScript:dialogSequence><rdf:Seq>\n";
    for (auto const& line : samples::SceneDialogue())
        b += "<rdf:li rdf:parseType=\"Resource\"><xmpScript:character>" + Escape(line.character) +
             "</xmpScript:character><xmpScript:dialog>" + Escape(line.dialog) +
             "</xmpScript:dialog></rdf:li>\n";
    b += "</rdf:Seq></xmpScript:dialogSequence>\n";
    return Packet(b);
}

std::string StormScriptPacket()
{
    std::string b;
    b += LangAlt("dc:title", "Storm Night, scenes 12 to 14, shooting script");
    b += List("dc:creator", "Seq", {"Coastline Pictures story department"});
    b += LangAlt("dc:description",
                 "The night of the storm: the keeper's cottage, the lighthouse gallery and the "
                 "harbour office on the radio.");
    b += Simple("xmp:CreateDate", "2026-06-12T09:30:00+01:00");
    b += Simple("xmpDM:projectName", "Storm Night");
    b += Simple("xmpDM:scene", "12-14");
    b += Simple("xmpScript:sceneSetting",
                "INT. KEEPER'S COTTAGE / EXT. LIGHTHOUSE GALLERY / INT. HARBOUR OFFICE - NIGHT");
    b += Simple("xmpScript:timeOfDay", "Night");
    b += Simple("xmpScript:action",
                "Tomas sees a boat in distress and turns the lamp by hand while Elin rings the "
                "bell; the harbour master talks the skipper past the reef.");
    b += List("xmpScript:character", "Bag", {"ELIN", "TOMAS", "MAREK", "ÅSA"});
    b += "<xmpScript:dialogSequence><rdf:Seq>\n";
    for (auto const& line : samples::StormScenesDialogue())
        b += "<rdf:li rdf:parseType=\"Resource\"><xmpScript:character>" + Escape(line.character) +
             "</xmpScript:character><xmpScript:dialog>" + Escape(line.dialog) +
             "</xmpScript:dialog></rdf:li>\n";
    b += "</rdf:Seq></xmpScript:dialogSequence>\n";
    return Packet(b);
}

std::string SidecarPacket()
{
    std::string b;
    b += LangAlt("dc:title", "Breakwater, long exposure");
    b += List("dc:creator", "Seq", {"Ines Carvalho"});
    b += List("dc:subject", "Bag", {"breakwater", "long exposure", "dusk"});
    b += Simple("xmp:Rating", "3");
    b += Simple("xmp:CreateDate", "2026-04-18T20:51:40+01:00");
    b += Simple("tiff:Make", "Velcam");
    b += Simple("tiff:Model", "V-7 Mark II");
    b += Simple("exif:ExposureTime", "30/1");
    b += Simple("exif:FNumber", "11/1");
    b += List("exif:ISOSpeedRatings", "Seq", {"100"});
    b += Simple("crs:Version", "15.2");
    b += Simple("crs:WhiteBalance", "Custom");
    b += Simple("crs:Temperature", "5150");
    b += Simple("crs:Tint", "+6");
    b += Simple("crs:Exposure2012", "+0.35");
    b += Simple("crs:Contrast2012", "+12");
    b += Simple("crs:Highlights2012", "-48");
    b += Simple("crs:Shadows2012", "+22");
    b += Simple("crs:ToneCurveName2012", "Linear");
    b += List("crs:ToneCurve", "Seq", {"0, 0", "255, 255"});
    return Packet(b);
}

bool WriteFile(std::string const& path, std::string const& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), std::streamsize(bytes.size()));
    return bool(out);
}

bool PutXmp(std::string const& path, std::string const& packet)
{
    XmpPtr xmp = xmp_new(packet.data(), packet.size());
    if (!xmp)
    {
        std::fprintf(stderr, "packet for %s does not parse (error %d)\n", path.c_str(),
                     xmp_get_error());
        return false;
    }
    XmpFilePtr file = xmp_files_open_new(path.c_str(), XMP_OPEN_FORUPDATE);
    bool ok = file && xmp_files_can_put_xmp(file, xmp) && xmp_files_put_xmp(file, xmp);
    if (file)
        ok = xmp_files_close(file, XMP_CLOSE_SAFEUPDATE) && ok;
    if (file)
        xmp_files_free(file);
    xmp_free(xmp);
    if (!ok)
        std::fprintf(stderr, "cannot put XMP into %s (error %d)\n", path.c_str(), xmp_get_error());
    return ok;
}

std::string SidecarText(std::string const& packet)
{
    XmpPtr xmp = xmp_new(packet.data(), packet.size());
    if (!xmp)
        return {};
    XmpStringPtr buffer = xmp_string_new();
    xmp_serialize(xmp, buffer, XMP_SERIAL_OMITPACKETWRAPPER, 0);
    std::string text = xmp_string_cstr(buffer);
    xmp_string_free(buffer);
    xmp_free(xmp);
    return text;
}

void Put16(std::string& s, unsigned v)
{
    s += char(v & 0xFF), s += char((v >> 8) & 0xFF);
}
void Put32(std::string& s, std::uint32_t v)
{
    Put16(s, v & 0xFFFF), Put16(s, v >> 16);
}

// 8-bit mono at 2 kHz: a soft tone while each word is spoken, silence between.
std::string WaveFile(std::vector<Word> const& words, double seconds)
{
    unsigned const rate = 2000;
    std::string samples(std::size_t(seconds * rate), char(128));
    for (auto const& w : words)
    {
        double const pitch = w.speaker == "Interviewer" ? 220.0 : 180.0;
        std::size_t const from = std::size_t(double(w.start) / kTicksPerSecond * rate);
        std::size_t const to = std::min(
            samples.size(), from + std::size_t(double(w.duration) / kTicksPerSecond * rate));
        for (std::size_t i = from; i < to; ++i)
        {
            double const envelope = std::sin(M_PI * double(i - from) / double(to - from));
            samples[i] =
                char(128 + int(24 * envelope * std::sin(2 * M_PI * pitch * double(i) / rate)));
        }
    }
    std::string wav = "RIFF";
    Put32(wav, std::uint32_t(36 + samples.size()));
    wav += "WAVEfmt ";
    Put32(wav, 16);
    Put16(wav, 1); // PCM
    Put16(wav, 1); // mono
    Put32(wav, rate);
    Put32(wav, rate); // bytes a second
    Put16(wav, 1);
    Put16(wav, 8);
    wav += "data";
    Put32(wav, std::uint32_t(samples.size()));
    return wav + samples;
}

QImage HarbourImage()
{
    QImage image(960, 640, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 380);
    sky.setColorAt(0, QColor(38, 52, 96));
    sky.setColorAt(0.6, QColor(232, 142, 96));
    sky.setColorAt(1, QColor(250, 204, 140));
    p.fillRect(0, 0, 960, 380, sky);
    p.setBrush(QColor(255, 226, 160));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(620, 372), 46, 46);
    QLinearGradient sea(0, 380, 0, 640);
    sea.setColorAt(0, QColor(70, 92, 128));
    sea.setColorAt(1, QColor(20, 34, 58));
    p.fillRect(0, 380, 960, 260, sea);
    p.setPen(QPen(QColor(255, 214, 150, 120), 2));
    for (int y = 392; y < 640; y += 14)
        p.drawLine(560 - (y - 380) / 3, y, 680 + (y - 380) / 3, y);
    // Lighthouse on the point.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(28, 30, 40));
    p.drawRect(0, 330, 230, 60);
    p.setBrush(QColor(236, 232, 222));
    p.drawPolygon(
        QPolygonF({QPointF(118, 330), QPointF(162, 330), QPointF(154, 190), QPointF(126, 190)}));
    p.setBrush(QColor(176, 38, 38));
    p.drawRect(QRectF(126, 240, 28, 18));
    p.drawRect(QRectF(122, 292, 36, 18));
    p.setBrush(QColor(255, 236, 170));
    p.drawRect(QRectF(128, 172, 24, 18));
    p.setBrush(QColor(255, 236, 170, 60));
    p.drawPolygon(QPolygonF({QPointF(152, 176), QPointF(420, 130), QPointF(420, 220)}));
    // Boats.
    for (int i = 0; i < 3; ++i)
    {
        double const x = 330 + i * 170, y = 470 + i * 40, s = 1.0 + i * 0.35;
        QPainterPath hull;
        hull.moveTo(x, y);
        hull.lineTo(x + 90 * s, y);
        hull.lineTo(x + 74 * s, y + 18 * s);
        hull.lineTo(x + 12 * s, y + 18 * s);
        hull.closeSubpath();
        p.setBrush(QColor(16, 20, 30));
        p.drawPath(hull);
        p.drawRect(QRectF(x + 30 * s, y - 22 * s, 24 * s, 22 * s));
        p.setPen(QPen(QColor(16, 20, 30), 2));
        p.drawLine(QPointF(x + 60 * s, y), QPointF(x + 60 * s, y - 60 * s));
        p.setPen(Qt::NoPen);
    }
    return image;
}

QImage StoryboardImage()
{
    QImage image(640, 360, QImage::Format_RGB32);
    image.fill(QColor(244, 240, 230));
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(40, 40, 40), 3));
    p.drawRect(20, 20, 600, 320);
    p.setPen(QPen(QColor(60, 60, 60), 2));
    p.drawRect(380, 70, 160, 110); // window
    p.drawLine(460, 70, 460, 180);
    p.drawLine(380, 125, 540, 125);
    p.drawEllipse(QPointF(180, 150), 26, 30); // Tomas
    p.drawLine(180, 180, 180, 280);
    p.drawLine(180, 210, 230, 170);
    p.drawEllipse(QPointF(300, 170), 22, 26); // Elin
    p.drawLine(300, 196, 300, 290);
    p.setFont(QFont("DejaVu Sans", 14));
    p.drawText(40, 320, "12 / 3  TOMAS at the window, ELIN behind him");
    return image;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (!xmp_init())
        return 1;

    if (argc == 4 && std::strcmp(argv[1], "--speech-markers") == 0)
    {
        auto const words = TimedWords(std::size_t(std::stoul(argv[2])));
        double const seconds =
            double(words.back().start + words.back().duration) / kTicksPerSecond + 1.0;
        bool const ok = WriteFile(argv[3], SidecarText(InterviewPacket(words, seconds)));
        xmp_terminate();
        return ok ? 0 : 1;
    }
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: %s OUTPUT_FOLDER | --speech-markers N FILE\n", argv[0]);
        return 2;
    }
    std::string const folder = argv[1];
    bool ok = true;

    std::string const photo = folder + "/harbour-first-light.jpg";
    ok = HarbourImage().save(QString::fromStdString(photo), "JPEG", 82) &&
         PutXmp(photo, PhotoPacket()) && ok;

    auto const words = TimedWords(2000);
    double const seconds =
        double(words.back().start + words.back().duration) / kTicksPerSecond + 1.0;
    std::string const wav = folder + "/keeper-interview.wav";
    ok = WriteFile(wav, WaveFile(words, seconds)) && PutXmp(wav, InterviewPacket(words, seconds)) &&
         ok;

    std::string const board = folder + "/storm-night-scene12.png";
    ok = StoryboardImage().save(QString::fromStdString(board), "PNG") &&
         PutXmp(board, ScriptPacket()) && ok;

    ok = WriteFile(folder + "/breakwater-long-exposure.xmp", SidecarText(SidecarPacket())) && ok;
    ok = WriteFile(folder + "/storm-night-script.xmp", SidecarText(StormScriptPacket())) && ok;

    xmp_terminate();
    std::printf("%s\n", ok ? "samples written" : "some samples failed");
    return ok ? 0 : 1;
}

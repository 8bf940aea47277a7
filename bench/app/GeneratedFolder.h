#pragma once
// Folders of small sidecar files with varied, plausible metadata (title,
// description, keywords, creator, place, rating, date) for the browser's
// benchmarks: about 1.3 KB a file, all different.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <cstdint>
#include <cstdio>

namespace zephbench
{

inline char const* Word(std::uint32_t& seed)
{
    static char const* const kWords[] = {
        "harbour",  "boats",    "storm",  "lighthouse", "keeper", "night",   "quay",    "nets",
        "gulls",    "tide",     "market", "rope",       "lamp",   "morning", "harvest", "cliff",
        "village",  "chapel",   "ferry",  "anchor",     "sail",   "island",  "bridge",  "winter",
        "festival", "portrait", "fog",    "beacon",     "mill",   "orchard", "shore",   "dune"};
    seed = seed * 1664525u + 1013904223u;
    return kWords[(seed >> 16) % (sizeof kWords / sizeof *kWords)];
}

// Writes `count` files named "photo-<n>.xmp" into the folder; false if one
// could not be written.
inline bool GenerateSidecars(QString const& folder, int count)
{
    std::uint32_t seed = 12345;
    for (int n = 1; n <= count; ++n)
    {
        char title[160], description[400], keywords[400];
        std::snprintf(title, sizeof title, "%s %s %d", Word(seed), Word(seed), n);
        std::snprintf(description, sizeof description, "The %s by the %s, %s and %s at %s.",
                      Word(seed), Word(seed), Word(seed), Word(seed), Word(seed));
        std::snprintf(keywords, sizeof keywords,
                      "<rdf:li>%s</rdf:li><rdf:li>%s</rdf:li>"
                      "<rdf:li>%s</rdf:li>",
                      Word(seed), Word(seed), Word(seed));
        QByteArray packet;
        packet += "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                  "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
                  "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/' "
                  "xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
                  "xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' xmp:Rating='";
        packet += QByteArray::number(n % 6);
        packet += "' xmp:CreateDate='20";
        packet += QByteArray::number(10 + n % 14) + "-0" + QByteArray::number(1 + n % 9) + "-1" +
                  QByteArray::number(n % 10) + "T10:30:00' photoshop:City='";
        packet += Word(seed);
        packet += "' photoshop:Headline='";
        packet += title;
        packet += "'><dc:title><rdf:Alt><rdf:li xml:lang='x-default'>";
        packet += title;
        packet += "</rdf:li></rdf:Alt></dc:title><dc:description><rdf:Alt><rdf:li "
                  "xml:lang='x-default'>";
        packet += description;
        packet += "</rdf:li></rdf:Alt></dc:description><dc:subject><rdf:Bag>";
        packet += keywords;
        packet += "</rdf:Bag></dc:subject><dc:creator><rdf:Seq><rdf:li>Ann Quayle</rdf:li>"
                  "</rdf:Seq></dc:creator></rdf:Description></rdf:RDF></x:xmpmeta>";
        QFile file(QDir(folder).filePath(QStringLiteral("photo-%1.xmp").arg(n)));
        if (!file.open(QIODevice::WriteOnly) || file.write(packet) != packet.size())
            return false;
    }
    return true;
}

} // namespace zephbench

#pragma once
// Shared ground of the script view's tests: packets of dialogue, widths in
// the view's font, and the stretches that a screenshot shows lit by the
// search.

#include <zephmetadata/Provider.h>

#include <boost/shared_ptr.hpp>

#include <QImage>

#include <string>
#include <utility>
#include <vector>

namespace scripttest
{

// A speaker and a speech; an empty text leaves its field out of the item.
using Speech = std::pair<std::string, std::string>;

// rdf:Description content with a dialogSequence of these items.
std::string DialogueBody(std::vector<Speech> const& speeches);
// A provider over a packet of that content (xmpScript and dc declared).
boost::shared_ptr<zephmetadata::BufferProviderImpl> ScriptProvider(std::string const& body);

// Widths in the font the view draws with.
float Width(std::string const& text);
// "[name]" with the gap after it: where a speaker's first line starts.
float TagWidth(std::string const& name);

// A stretch of one row (of the document, counted from 0) lit by the search
// fill: the whole pixels it covers, right edge excluded.
struct Lit
{
    int row = 0;
    float left = 0.0f;
    float right = 0.0f;
};
// What the screenshot of a view scrolled to scrollTop shows lit, row by row
// and left to right.
std::vector<Lit> LitStretches(QImage const& shot, float scrollTop = 0.0f);
// The stretch that a hit on a row covers: the text before it on the line
// starts at x, the hit is as wide as its text.
Lit LitText(int row, float x, std::string const& before, std::string const& hit);
// A speaker's lit tag, which stands at the start of the row.
Lit LitTag(int row, std::string const& name);
// Equal within the pixel that partly covered edges leave out.
void ExpectLit(std::vector<Lit> const& shown, std::vector<Lit> const& expected);

} // namespace scripttest

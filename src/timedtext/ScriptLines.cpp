// Cutting a speech into lines. The rule measures the text before each blank
// until one no longer fits; measured afresh that costs the square of a
// line's length. Here each word is measured once (and cached across
// speeches), the text before a blank is a running sum, and the rare cuts
// inside a word find their place by halving.

#include "timedtext/ScriptDocument.h"

namespace zephmetadataui::timedtext
{

namespace
{

constexpr unsigned short kBlank = 32;

// A blank alone, or a run of other characters, with its width.
struct Token
{
    std::size_t start = 0;
    std::size_t end = 0;
    float width = 0.0f;
};

class Breaker
{
public:
    Breaker(WordWidthCache& widths, UTF16String const& text) : widths(widths), text(text)
    {
        UTF16StringView const all(text.data(), text.size());
        float const blankWidth = widths.Width(UTF16StringView(&kBlank, 1));
        for (std::size_t at = 0; at < text.size();)
        {
            std::size_t end = at + 1;
            if (text[at] != kBlank)
                while (end < text.size() && text[end] != kBlank)
                    ++end;
            float const width =
                text[at] == kBlank ? blankWidth : widths.Width(all.substr(at, end - at));
            tokens.push_back(Token{at, end, width});
            at = end;
        }
        // after[t]: the width of tokens t and all that follow.
        after.assign(tokens.size() + 1, 0.0);
        for (std::size_t t = tokens.size(); t-- > 0;)
            after[t] = after[t + 1] + double(tokens[t].width);
    }

    void Run(float firstRoom, float room, std::vector<UTF16String>& lines)
    {
        std::size_t position = 0;
        std::size_t token = 0;
        float lineRoom = firstRoom;
        while (position < text.size())
        {
            while (tokens[token].end <= position)
                ++token;
            Token const& first = tokens[token];
            float const firstWidth =
                position == first.start ? first.width : Measure(position, first.end);
            bool const blankFollows = token + 1 < tokens.size();
            if (text[first.start] != kBlank && blankFollows && firstWidth > lineRoom)
            {
                // The word is too wide and a blank follows it: one character
                // a line until the word's rest fits.
                lines.push_back(text.substr(position++, 1));
                std::size_t const fits = FirstFittingStart(position, first.end, room);
                for (; position < fits; ++position)
                    lines.push_back(text.substr(position, 1));
            }
            else
            {
                std::size_t const length = LineLength(position, token, firstWidth, lineRoom);
                lines.push_back(text.substr(position, length));
                position += length;
            }
            lineRoom = room;
        }
    }

private:
    float Measure(std::size_t from, std::size_t to) const
    {
        return widths.Measure(UTF16StringView(text.data() + from, to - from));
    }

    // The characters of the line that starts at position, inside token.
    std::size_t LineLength(std::size_t position, std::size_t token, float firstWidth,
                           float room) const
    {
        if (double(firstWidth) + after[token + 1] <= double(room))
            return text.size() - position;
        std::size_t best = 1;
        bool blankSeen = false;
        double before = 0.0;
        for (std::size_t t = token; t < tokens.size(); ++t)
        {
            if (text[tokens[t].start] == kBlank)
            {
                blankSeen = true;
                if (before > double(room))
                    return best;
                if (tokens[t].start != position)
                    best = tokens[t].start - position;
            }
            before += double(t == token ? firstWidth : tokens[t].width);
        }
        return blankSeen ? best : CharacterBreak(position, room);
    }

    // No blank in the rest, which is too wide: as many characters as fit,
    // at least one and never all.
    std::size_t CharacterBreak(std::size_t position, float room) const
    {
        std::size_t const length = text.size() - position;
        std::size_t fits = 1;
        std::size_t tooWide = length;
        for (std::size_t probe = 1; probe < length; probe *= 2)
        {
            if (Measure(position, position + probe) > room)
            {
                tooWide = probe;
                break;
            }
            fits = probe;
        }
        while (tooWide > fits + 1)
        {
            std::size_t const middle = fits + (tooWide - fits) / 2;
            if (Measure(position, position + middle) <= room)
                fits = middle;
            else
                tooWide = middle;
        }
        return fits;
    }

    // The first start from `from` on whose rest of the word, up to end,
    // fits; the text just before `from` is known not to.
    std::size_t FirstFittingStart(std::size_t from, std::size_t end, float room) const
    {
        if (room < 0.0f)
            return end;
        std::size_t tooWide = from - 1;
        std::size_t fits = end;
        for (std::size_t probe = from, step = 1; probe < end; probe += step, step *= 2)
        {
            if (Measure(probe, end) <= room)
            {
                fits = probe;
                break;
            }
            tooWide = probe;
        }
        while (fits > tooWide + 1)
        {
            std::size_t const middle = tooWide + (fits - tooWide) / 2;
            if (Measure(middle, end) <= room)
                fits = middle;
            else
                tooWide = middle;
        }
        return fits;
    }

    WordWidthCache& widths;
    UTF16String const& text;
    std::vector<Token> tokens;
    std::vector<double> after;
};

} // namespace

void BreakIntoLines(WordWidthCache& widths, UTF16String const& text, float firstRoom, float room,
                    std::vector<UTF16String>& lines)
{
    lines.clear();
    if (text.empty())
        return;
    Breaker(widths, text).Run(firstRoom, room, lines);
}

} // namespace zephmetadataui::timedtext

#pragma once
// The words of the samples: an interview about restoring a lighthouse, a
// short screenplay scene, and the dialogue of the film's three storm scenes.
// Written for this project.

#include <vector>

namespace samples
{

struct Speech
{
    char const* speaker;
    char const* text;
};

inline std::vector<Speech> const& InterviewSpeeches()
{
    static std::vector<Speech> const speeches = {
        {"Interviewer", "Thank you for meeting us here at the point. When did you first come out "
                        "to the lighthouse?"},
        {"Mara Lindqvist", "I came out the first time in the spring of my twelfth year. My "
                           "grandfather kept the light, "
                           "and he let me climb the stairs with him every evening to wind the "
                           "clockwork. There are one "
                           "hundred and eight steps, and I counted every one of them, every night, "
                           "for a whole summer."},
        {"Interviewer",
         "And now you are the one restoring it. What state was it in when the trust took it over?"},
        {"Mara Lindqvist",
         "Honestly, it was close to lost. The lantern glass had cracked in two places, the iron "
         "gallery was rusting through, and the salt had eaten into the mortar on the sea side. "
         "When the wind came from the west you could hear the whole tower breathe. We spent the "
         "first winter just keeping the weather out, with tarpaulins and timber and a lot of "
         "patience."},
        {"Interviewer", "Jonas, you keep the trust's accounts. Where did the money come from?"},
        {"Jonas Berg",
         "From the village, mostly. People gave what they could. A fisherman left us his boat in "
         "his "
         "will, and we sold it to pay for the new glazing. Children from the school collected "
         "bottles "
         "for a year. The county matched every coin we raised, and later a maritime museum lent us "
         "two engineers who knew the old lenses better than anyone alive."},
        {"Interviewer", "Tell me about the lens."},
        {"Mara Lindqvist", "The lens is the heart of it. It is a first order lens, more than two "
                           "metres tall, made of "
                           "hundreds of prisms set in brass. Each prism bends the light a little, "
                           "and together they throw "
                           "a beam you can see from forty kilometres out. When we took it apart we "
                           "numbered every piece, "
                           "photographed it, and wrapped it in cotton. It took nine weeks to clean "
                           "and nine more to put back."},
        {"Interviewer", "Was anything missing?"},
        {"Mara Lindqvist",
         "Three prisms were broken and one was gone altogether. We think a storm in the fifties "
         "took "
         "it. A glass studio in the north cast new ones from a mould of the old, and you honestly "
         "cannot tell which ones are new unless you know where to look. I know, of course. I look "
         "at "
         "them every time."},
        {"Interviewer",
         "What does the light mean to the people here today? Ships have satellites now."},
        {"Mara Lindqvist",
         "That is true, and the light is no longer on the official charts. But the small boats "
         "still "
         "use it, the ones that go out for crab in the autumn. And for the village it is a clock. "
         "When the beam comes round, people know the day is over. My neighbour says she cannot "
         "sleep "
         "until she has seen it turn twice."},
        {"Interviewer", "What is left to do?"},
        {"Mara Lindqvist",
         "The keeper's cottage. The roof is sound now, but the rooms are empty. We want to open it "
         "for visitors next summer, with the logbooks on display. My grandfather wrote in them "
         "every "
         "night for thirty years: the wind, the weather, the ships that passed. Reading them is "
         "like "
         "hearing him talk again."},
        {"Interviewer", "Would you like to keep the light yourself one day?"},
        {"Mara Lindqvist",
         "I already do, in a way. Every evening I drive out, I climb the hundred and eight steps, "
         "and I "
         "check that the lamp comes on. Nobody asked me to. I just could not imagine letting it go "
         "dark again."},
    };
    return speeches;
}

// Readings a speech recogniser might have offered instead of the word.
inline std::vector<std::vector<char const*>> const& AlternativeReadings()
{
    static std::vector<std::vector<char const*>> const readings = {
        {"there", "their", "they're"}, {"sea", "see", "C"},
        {"light", "lite", "night"},    {"point", "joint", "pointe"},
        {"eight", "ate", "aid"},       {"two", "to", "too"},
        {"one", "won", "run"},         {"new", "knew", "few"},
        {"know", "no", "now"},         {"wind", "wined", "win"},
        {"prisms", "prison", "prism"}, {"lens", "lenses", "lends"},
        {"beam", "been", "bean"},      {"crab", "cab", "grab"},
        {"roof", "proof", "rough"},    {"steps", "step", "stamps"},
        {"salt", "fault", "sold"},     {"weather", "whether", "feather"},
    };
    return readings;
}

struct ScriptLine
{
    char const* character;
    char const* dialog;
};

inline std::vector<ScriptLine> const& SceneDialogue()
{
    static std::vector<ScriptLine> const lines = {
        {"ELIN", "You left the lamp burning again."},
        {"TOMAS", "Somebody has to. The ferry is late."},
        {"ELIN", "The ferry has not run since October, Tomas. You know that."},
        {"TOMAS",
         "Then whoever is out there in this weather will need it more than the ferry would."},
        {"ELIN", "There is nobody out there. Come inside, the soup is getting cold."},
        {"TOMAS", "Listen. Do you hear it? An engine, low, to the south of the rocks."},
        {"ELIN", "I hear the wind. I have heard nothing but the wind for three days."},
        {"TOMAS", "Bring me the glasses from the shelf. The brass ones, not the new ones."},
        {"ELIN", "If I bring them, will you eat?"},
        {"TOMAS", "If I see nothing, I will eat two bowls and say nothing more about it."},
        {"ELIN", "Here. Your hands are frozen."},
        {"TOMAS",
         "There. A green light, and a white one above it. She is heading straight for the reef."},
        {"ELIN", "Then turn the lamp, quickly. I will ring the bell."},
        {"TOMAS", "Ring it until your arms ache, Elin. They have to hear us."},
    };
    return lines;
}

// Scenes 12 to 14 of the film: the cottage, the gallery of the lighthouse,
// and the harbour office on the radio. Some speakers go on over two items,
// as a script splits a speech around an action line.
inline std::vector<ScriptLine> const& StormScenesDialogue()
{
    static std::vector<ScriptLine> const lines = {
        // 12. INT. KEEPER'S COTTAGE - NIGHT
        {"ELIN", "You left the lamp burning again."},
        {"TOMAS", "Somebody has to. The ferry is late."},
        {"ELIN", "The ferry has not run since October, Tomas. You know that."},
        {"TOMAS", "Listen. Do you hear it? An engine, low, to the south of the rocks."},
        {"ELIN", "I hear the wind. I have heard nothing but the wind for three days, and the "
                 "shutters, and you walking up and down the stairs at night as if your father "
                 "were still up there calling for oil."},
        {"TOMAS", "Bring me the glasses from the shelf."},
        {"TOMAS", "The brass ones, not the new ones. The new ones fog."},
        {"ELIN", "If I bring them, will you eat?"},
        // 13. EXT. LIGHTHOUSE GALLERY - NIGHT
        {"TOMAS", "There. A green light, and a white one above it. She is heading straight for "
                  "the reef."},
        {"ELIN", "I can't see anything. The rain is coming sideways."},
        {"TOMAS", "Take the bell rope. Ring it until your arms ache."},
        {"ELIN", "And you?"},
        {"TOMAS", "I'm going to turn the lamp by hand. The clockwork froze at nine."},
        {"MAREK", "Harbour, harbour, this is Saint Brendan. We have lost our engine and we are "
                  "drifting north. Does anyone hear me?"},
        {"TOMAS", "That's him. That's Marek's boat."},
        // 14. INT. HARBOUR OFFICE - NIGHT
        {"ÅSA", "Saint Brendan, this is the harbour office. I hear you. Give me your position."},
        {"MAREK", "I don't know my position. I see a light on the point, turning slow."},
        {"ÅSA", "Keep that light on your starboard side. Do you understand me? Starboard."},
        {"MAREK", "Starboard. Understood."},
        {"ÅSA", "Tomas, if you can hear this: keep it turning. Whatever it costs you, keep it "
                "turning until I call."},
        {"ÅSA", "Lifeboat is launching now."},
        {"ELIN", "Tomas! Your hands!"},
        {"TOMAS", "Ring the bell, Elin. Don't stop."},
    };
    return lines;
}

} // namespace samples

// The layout-script parser: what sound scripts become, and where each kind of
// damage is reported.

#include "zepheve/LayoutScript.h"

#include <gtest/gtest.h>

#include <string>

using namespace zepheve;

namespace
{

// The element tree on one line: widget, name, attributes (numbers times ten,
// lists by their length), then children.
std::string Flatten(ScriptElement const& e)
{
    std::string out = e.widget + (e.name.empty() ? "" : " " + e.name) + "(";
    for (ScriptAttribute const& a : e.attributes)
    {
        ScriptValue const& v = a.value;
        out += a.name + "=" +
               (v.kind == ScriptValue::kList     ? std::to_string(v.items.size()) + " items"
                : v.kind == ScriptValue::kNumber ? std::to_string(int(v.number * 10))
                                                 : v.text) +
               ";";
    }
    out += ")";
    for (ScriptElement const& child : e.children)
        out += " [" + Flatten(child) + "]";
    return out;
}

// Lines: 1 header, 2 dialog, 3 name, 4 arrangement, 5 placement, 6 button, 7-8 closing.
char const* const kSmall = "layout Small\n"
                           "zeph_dialog {\n"
                           "    name: \"Small\"\n"
                           "    zeph_arrangement row1 {\n"
                           "        placement: row\n"
                           "        zeph_button ok { title: \"Go\" }\n"
                           "    }\n"
                           "}\n";
char const* const kSmallTree =
    "zeph_dialog(name=Small;) [zeph_arrangement row1(placement=row;) [zeph_button ok(title=Go;)]]";

std::string Damaged(std::string const& from, std::string const& to)
{
    std::string text = kSmall;
    std::size_t const at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

} // namespace

TEST(LayoutScriptTest, SoundScriptsReadAsTheirElementTrees)
{
    std::pair<std::string, char const*> const cases[] = {
        {kSmall, kSmallTree},
        // Comments, semicolons, one line, a quoted name, escapes.
        {"# lead\nlayout L zeph_dialog { spacing: 15; # trailing\n"
         "zeph_button \"my button\" { title: \"say \\\"hi\\\"\\\\\"; min_width: 80.5 } }",
         "zeph_dialog(spacing=150;) [zeph_button my button(title=say \"hi\"\\;min_width=805;)]"},
        {"layout L zeph_dialog { zeph_arrangement { align: [right, top] "
         "zeph_ok_cancel_column {} } }",
         "zeph_dialog() [zeph_arrangement(align=2 items;) [zeph_ok_cancel_column()]]"},
        // Text after a zero byte is ignored.
        {std::string(kSmall) + '\0' + "garbage {", kSmallTree},
    };
    for (auto const& [text, tree] : cases)
        EXPECT_EQ(Flatten(ParseLayoutScript(text).dialog), tree) << text;
    EXPECT_EQ(ParseLayoutScript(kSmall).layoutName, "Small");
}

TEST(LayoutScriptTest, EachDamageIsReportedWhereItIsWithItsReason)
{
    struct Case
    {
        std::string text;
        int line, column;
        char const* reason;
    };
    // Deep nesting is refused rather than exhausting the stack.
    std::string deep = "layout L zeph_dialog {";
    for (int i = 0; i < 10000; ++i)
        deep += " zeph_arrangement {";
    Case const cases[] = {
        {deep, 1, 1221, "nested too deeply"},
        {Damaged("layout Small", "Small"), 1, 1, "starts with 'layout'"},
        {Damaged("zeph_button ok", "zeph_knob ok"), 6, 9, "unknown widget 'zeph_knob'"},
        {Damaged("placement: row", "colour: row"), 5, 9, "unknown attribute 'colour'"},
        {Damaged("placement: row", "placement: diagonal"), 5, 20, "takes row, column"},
        {Damaged("placement: row", "placement: row placement: column"), 5, 24, "given twice"},
        {Damaged("{ title: \"Go\" }", "{ title: 12 }"), 6, 33, "needs a quoted text"},
        {Damaged("{ title: \"Go\" }", "{ title: \"Grüße\"; min_width: -5 }"), 6, 53,
         "from 0 to 100000"},
        {Damaged("{ title: \"Go\" }", "{ min_size: [1] }"), 6, 36, "[width, height]"},
        {Damaged("{ title: \"Go\" }", "{ focus: maybe }"), 6, 33, "true or false"},
        {Damaged("placement: row", "align: [left, right]"), 5, 23, "same direction"},
        {Damaged("{ title: \"Go\" }", "{ title: \"Go }"), 6, 33, "closing quote"},
        {Damaged("{ title: \"Go\" }", "{ zeph_popup p {} }"), 6, 26, "holds no widgets"},
        {Damaged("zeph_button ok", "zeph_dialog ok"), 6, 9, "outermost"},
        {Damaged("row1", "ok"), 6, 9, "'ok' is already used at line 4, column 5"},
        {Damaged("zeph_button ok { title: \"Go\" }",
                 "zeph_ok_cancel_column {} zeph_button okButton {}"),
         6, 34, "'okButton' is already used at line 6, column 9"},
        {Damaged("    }\n}\n", "    }\n"), 2, 13, "never closed"},
        {Damaged("    }\n}\n", "    }\n}\n}\n"), 9, 1, "nothing may follow"},
        {Damaged("placement: row", "placement: [row"), 6, 9, "expected ',' or ']'"},
        {Damaged("placement: row", "placement: @"), 5, 20, "unexpected character '@'"},
        {Damaged("placement: row", "spacing: [1, 2, 3]"), 5, 18, "[horizontal, vertical]"},
    };
    for (Case const& c : cases)
    {
        try
        {
            ParseLayoutScript(c.text);
            ADD_FAILURE() << "no error for: " << c.text;
        }
        catch (LayoutScriptError const& e)
        {
            EXPECT_NE(e.GetReason().find(c.reason), std::string::npos) << e.what();
            std::string const where =
                "line " + std::to_string(c.line) + ", column " + std::to_string(c.column) + ": ";
            EXPECT_EQ(std::string(e.what()).rfind(where, 0), 0u) << e.what();
        }
    }
}

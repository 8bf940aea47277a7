// A host's use of the installed layout-script library: a script read into its
// element tree, and a damaged one refused with its place. Exits non-zero on a
// wrong answer.

#include <zepheve/LayoutScript.h>

#include <cstdio>

int main()
{
    zepheve::LayoutScript const script = zepheve::ParseLayoutScript(
        "layout Check\nzeph_dialog { zeph_arrangement { zeph_ok_cancel_column {} } }\n");
    bool ok = script.layoutName == "Check" && script.dialog.children.size() == 1 &&
              script.dialog.children[0].children[0].widget == "zeph_ok_cancel_column";
    try
    {
        zepheve::ParseLayoutScript("layout Check\nzeph_dialog {\n  zeph_knob {}\n}\n");
        ok = false;
    }
    catch (zepheve::LayoutScriptError const& e)
    {
        ok = ok && e.GetLine() == 3 && e.GetColumn() == 3;
    }
    std::printf("layout scripts: %s\n", ok ? "ok" : "wrong");
    return ok ? 0 : 1;
}

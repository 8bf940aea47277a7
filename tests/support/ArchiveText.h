#pragma once
// Writes dialog archives in the prop.map form (CR LF, one element a line),
// for tests and benchmarks that read archives of their own.

#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

namespace archivetext
{

inline std::string Line(std::string const& text)
{
    return text + "\r\n";
}

inline std::string Escaped(std::string const& text)
{
    std::string out;
    for (char c : text)
        out += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
    return out;
}

inline std::string Pair(std::string const& key, std::string const& value)
{
    return Line("<prop.pair>") + Line("<key>" + key + "</key>") + value + Line("</prop.pair>");
}

inline std::string List(std::vector<std::string> const& pairs)
{
    std::string text = Line("<prop.list>");
    for (std::string const& pair : pairs)
        text += pair;
    return text + Line("</prop.list>");
}

inline std::string Unsigned(unsigned long value)
{
    return Line("<int type='unsigned' size='32'>" + std::to_string(value) + "</int>");
}

inline std::string Signed(long value)
{
    return Line("<int type='signed' size='32'>" + std::to_string(value) + "</int>");
}

inline std::string Float(double value)
{
    std::ostringstream text;
    text << std::setprecision(9) << value;
    return Line("<float>" + text.str() + "</float>");
}

inline std::string Bool(bool value)
{
    return Line(value ? "<true/>" : "<false/>");
}

inline std::string Text(std::string const& value)
{
    return Line("<string>" + Escaped(value) + "</string>");
}

inline std::string UText(std::string const& value)
{
    return Line("<ustring>" + Escaped(value) + "</ustring>");
}

inline std::string Rect(double left, double top, double width, double height)
{
    return List({Pair(".aptype", Unsigned(1)), Pair("left", Float(left)), Pair("top", Float(top)),
                 Pair("width", Float(width)), Pair("height", Float(height))});
}

inline std::string Mask(unsigned long mask)
{
    return List({Pair(".aptype", Unsigned(4)), Pair("constraints", Unsigned(mask))});
}

inline std::string Choice(long selected)
{
    return List({Pair(".aptype", Unsigned(2)), Pair("selected", Signed(selected))});
}

inline std::string UTexts(std::vector<std::string> const& items)
{
    std::string text = Line("<array>") + Line("<array.type><ustring/></array.type>");
    for (std::string const& item : items)
        text += UText(item);
    return text + Line("</array>");
}

inline std::string Section(std::string const& name, std::vector<std::string> pairs)
{
    pairs.insert(pairs.begin(), Pair("sectionName", UText(name)));
    return List(pairs);
}

inline std::string Numbered(std::string const& prefix, std::vector<std::string> const& entries)
{
    std::vector<std::string> pairs{Pair("count", Unsigned(entries.size()))};
    for (std::size_t i = 0; i < entries.size(); ++i)
        pairs.push_back(Pair(prefix + std::to_string(i), entries[i]));
    return List(pairs);
}

// A node: the class's own sections first, then UI_SubView (binding and
// children) and UI_Node (id and rectangle).
struct Node
{
    std::string cls;
    std::string id;
    double left = 0, top = 0, width = 0, height = 0;
    unsigned long mask = 0;
    std::vector<std::string> sections;
    std::vector<Node> children;
    std::string className;
    std::string constraints; // in place of the mask, when not empty
};

inline std::string NodeText(Node const& node)
{
    std::vector<std::string> sections = node.sections;
    std::vector<std::string> subView{
        Pair("Constraints", node.constraints.empty() ? Mask(node.mask) : node.constraints)};
    if (!node.children.empty())
    {
        std::vector<std::string> children;
        for (Node const& child : node.children)
            children.push_back(NodeText(child));
        subView.push_back(Pair("children", Numbered("child-", children)));
    }
    sections.push_back(Section("UI_SubView", subView));
    sections.push_back(
        Section("UI_Node", {Pair("id", Text(node.id)),
                            Pair("bounds", Rect(node.left, node.top, node.width, node.height))}));
    std::vector<std::string> pairs{Pair("adapter", UText("zephui::controls::" + node.cls))};
    if (!node.className.empty())
        pairs.push_back(Pair("className", UText(node.className)));
    pairs.push_back(Pair("sections", Numbered("section-", sections)));
    return List(pairs);
}

inline std::string Document(std::string const& rootNode)
{
    return Line("<?xml version='1.0'?>") + Line("<prop.map version='4'>") +
           List({Pair("UINodeArchive", Unsigned(1)), Pair("root", rootNode)}) + Line("</prop.map>");
}

inline std::string Document(Node const& root)
{
    return Document(NodeText(root));
}

} // namespace archivetext

#include "PropMapArchive.h"

#include "zephui/UI_ArchivedDialog.h"

#include "zephcore/QtStrings.h"

#include <QByteArray>
#include <QXmlStreamReader>

#include <cmath>
#include <limits>
#include <set>

namespace zephui::archive
{

namespace
{

// Deeper than any dialog goes; it keeps a hostile file off the stack's end.
constexpr int kMaxDepth = 64;

class Reader
{
public:
    explicit Reader(QByteArray const& bytes) : xml(bytes) {}

    PropValue ReadDocument()
    {
        if (Next() != QXmlStreamReader::StartElement || xml.name() != u"prop.map")
            Fail("the archive does not start with <prop.map>");
        if (xml.attributes().value(QLatin1String("version")) != u"4")
            Fail("<prop.map> is not of version '4'");
        if (Next() != QXmlStreamReader::StartElement || xml.name() != u"prop.list")
            Fail("<prop.map> holds no <prop.list>");
        PropValue top = ReadList(1);
        if (Next() != QXmlStreamReader::EndElement)
            Fail("<prop.map> holds more than one <prop.list>");
        if (Next() != QXmlStreamReader::EndDocument)
            Fail("text after </prop.map>");
        return top;
    }

private:
    [[noreturn]] void Fail(std::string const& reason) const
    {
        archive::Fail(reason, long(xml.lineNumber()), long(xml.columnNumber()));
    }

    std::string Name() const { return xml.name().toString().toStdString(); }

    // The next token that carries structure: blanks between elements and
    // comments are passed over; a syntax error ends the read.
    QXmlStreamReader::TokenType Next()
    {
        for (;;)
        {
            switch (xml.readNext())
            {
            case QXmlStreamReader::StartDocument:
            case QXmlStreamReader::Comment:
                continue;
            case QXmlStreamReader::Characters:
                if (xml.isWhitespace())
                    continue;
                Fail("text where an element belongs");
            case QXmlStreamReader::Invalid:
                Fail(xml.errorString().toStdString());
            case QXmlStreamReader::DTD:
            case QXmlStreamReader::EntityReference:
            case QXmlStreamReader::ProcessingInstruction:
                Fail("declarations and instructions have no place in an archive");
            default:
                return xml.tokenType();
            }
        }
    }

    // The text of an element that holds no elements.
    QString Text()
    {
        QString const text = xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
        if (xml.hasError())
            Fail(xml.errorString().toStdString());
        return text;
    }

    void Place(PropValue& value) const
    {
        value.line = long(xml.lineNumber());
        value.column = long(xml.columnNumber());
    }

    PropValue ReadList(int depth)
    {
        PropValue list;
        Place(list);
        list.kind = PropValue::kList;
        std::set<std::string> keys;
        while (Next() == QXmlStreamReader::StartElement)
        {
            if (xml.name() != u"prop.pair")
                Fail("<" + Name() + "> in a <prop.list>, where only <prop.pair> belongs");
            PropPair pair = ReadPair(depth);
            if (!keys.insert(pair.key).second)
                Fail("the key '" + pair.key + "' stands twice in one <prop.list>");
            list.pairs.push_back(std::move(pair));
        }
        return list;
    }

    PropPair ReadPair(int depth)
    {
        PropPair pair;
        if (Next() != QXmlStreamReader::StartElement || xml.name() != u"key")
            Fail("a <prop.pair> does not start with its <key>");
        pair.key = Text().toStdString();
        if (Next() != QXmlStreamReader::StartElement)
            Fail("the pair '" + pair.key + "' has no value");
        pair.value = ReadValue(depth + 1);
        if (Next() != QXmlStreamReader::EndElement)
            Fail("the pair '" + pair.key + "' has more than one value");
        return pair;
    }

    PropValue ReadValue(int depth)
    {
        if (depth > kMaxDepth)
            Fail("values nested too deeply");
        PropValue value;
        Place(value);
        QStringView const name = xml.name();
        if (name == u"prop.list")
            return ReadList(depth);
        if (name == u"int")
            ReadInt(value);
        else if (name == u"float")
            ReadFloat(value);
        else if (name == u"string")
        {
            value.kind = PropValue::kString;
            value.text = Text().toStdString();
        }
        else if (name == u"ustring")
        {
            value.kind = PropValue::kUString;
            value.wide = zephcore::ToUTF16(Text());
        }
        else if (name == u"true" || name == u"false")
        {
            value.kind = PropValue::kBool;
            value.flag = name == u"true";
            if (!Text().trimmed().isEmpty())
                Fail("<true/> and <false/> hold nothing");
        }
        else if (name == u"array")
            ReadArray(value, depth);
        else
            Fail("unknown element <" + Name() + ">");
        return value;
    }

    void ReadInt(PropValue& value)
    {
        auto const attributes = xml.attributes();
        QStringView const type = attributes.value(QLatin1String("type"));
        if (type != u"signed" && type != u"unsigned")
            Fail("an <int> is neither 'signed' nor 'unsigned'");
        if (attributes.value(QLatin1String("size")) != u"32")
            Fail("an <int> is not of size '32'");
        value.kind = type == u"signed" ? PropValue::kSigned : PropValue::kUnsigned;
        QString const text = Text();
        bool ok = false;
        qlonglong const number = text.toLongLong(&ok);
        bool const inRange =
            value.kind == PropValue::kSigned
                ? number >= std::numeric_limits<std::int32_t>::min() &&
                      number <= std::numeric_limits<std::int32_t>::max()
                : number >= 0 && number <= std::numeric_limits<std::uint32_t>::max();
        if (!ok || !inRange)
            Fail("'" + text.toStdString() + "' is no " + KindName(value.kind) + " 32-bit integer");
        value.integer = number;
    }

    void ReadFloat(PropValue& value)
    {
        value.kind = PropValue::kFloat;
        QString const text = Text();
        bool ok = false;
        value.number = text.toDouble(&ok);
        // Within float's range: rectangles are kept in float.
        if (!ok || !std::isfinite(value.number) ||
            std::fabs(value.number) > double(std::numeric_limits<float>::max()))
            Fail("'" + text.toStdString() + "' is no number");
    }

    void ReadArray(PropValue& value, int depth)
    {
        value.kind = PropValue::kArray;
        if (Next() != QXmlStreamReader::StartElement || xml.name() != u"array.type")
            Fail("an <array> does not start with its <array.type>");
        if (Next() != QXmlStreamReader::StartElement)
            Fail("an <array.type> names no type");
        PropValue const sample = ReadValue(depth + 1);
        if (sample.kind == PropValue::kArray || sample.kind == PropValue::kList ||
            sample.kind == PropValue::kBool)
            Fail(std::string("arrays of <") + KindName(sample.kind) + "> are not read");
        value.itemKind = sample.kind;
        if (Next() != QXmlStreamReader::EndElement)
            Fail("an <array.type> names more than one type");
        while (Next() == QXmlStreamReader::StartElement)
        {
            PropValue item = ReadValue(depth + 1);
            if (item.kind != value.itemKind)
                Fail(std::string("an <array> of <") + KindName(value.itemKind) + "> holds a <" +
                     KindName(item.kind) + ">");
            value.items.push_back(std::move(item));
        }
    }

    QXmlStreamReader xml;
};

} // namespace

PropValue const* PropValue::Find(std::string const& key) const
{
    for (PropPair const& pair : pairs)
        if (pair.key == key)
            return &pair.value;
    return nullptr;
}

char const* KindName(PropValue::Kind kind)
{
    switch (kind)
    {
    case PropValue::kList:
        return "prop.list";
    case PropValue::kSigned:
        return "signed";
    case PropValue::kUnsigned:
        return "unsigned";
    case PropValue::kFloat:
        return "float";
    case PropValue::kString:
        return "string";
    case PropValue::kUString:
        return "ustring";
    case PropValue::kBool:
        return "true or false";
    case PropValue::kArray:
        return "array";
    }
    return "?";
}

void Fail(std::string const& reason, long line, long column)
{
    throw ArchiveError(std::string(), reason, line, column);
}

PropValue ReadPropMap(std::vector<std::uint8_t> const& data)
{
    QByteArray const bytes(reinterpret_cast<char const*>(data.data()), qsizetype(data.size()));
    return Reader(bytes).ReadDocument();
}

} // namespace zephui::archive

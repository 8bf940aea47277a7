#pragma once
// Definitions: what the model knows of schemas, their properties, the types of
// values and structures, and the view definitions that forms are built from.
// All of them are shared by pointer and read directly as plain structures;
// once loaded they are not changed, except custom schemas by their owner.

#include "zephmetadata/Path.h"
#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/make_shared.hpp>
#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <vector>

namespace zephmetadata
{

// One entry of a choice list: the stored value and the text shown for it.
struct ZEPHMETADATA_EXPORT ChoiceDefinition
{
    UTF8String value;
    UTF16String label;
    UTF8String labelKey; // localiser key the label came from
};

using ChoiceList = std::vector<boost::shared_ptr<ChoiceDefinition>>;

// Common base of everything a schema defines. The first nine fields are read
// by the user interface; the keys behind them are kept to write files back.
struct ZEPHMETADATA_EXPORT EntryDefinition
{
    virtual ~EntryDefinition() = default;

    UTF16String label;
    UTF16String description;
    boost::optional<UTF8String> elementTypeId; // of a list
    boost::optional<double> minValue;
    boost::optional<double> maxValue;
    ChoiceList choices; // in display order
    UTF8String name;
    boost::optional<UTF8String> typeId;
    boost::optional<PrimitiveType> primitiveType;

    UTF8String labelKey;
    UTF8String descriptionKey;
};

// A property of a schema.
struct ZEPHMETADATA_EXPORT PropertyDefinition : EntryDefinition
{
    bool userAdded = false; // made by the user; only such a property may be deleted
};

// A field of a structure type. Fields carry their own namespace: in XMP a
// structure's fields are qualified names ("stEvt:action").
struct ZEPHMETADATA_EXPORT FieldDefinition : PropertyDefinition
{
    UTF8String fieldNamespace;
    UTF8String fieldPrefix; // as registered with the XMP toolkit
};

// A type: a primitive, a derived simple type ("date", "rating"), a choice list,
// a list kind, or a structure with fields.
struct ZEPHMETADATA_EXPORT TypeDefinition : PropertyDefinition
{
    std::vector<boost::shared_ptr<FieldDefinition>> fields; // declared order
};

// A schema. Compared by pointer identity; cloned field by field for dynamic
// schemas, so these nine fields are the whole of it.
struct ZEPHMETADATA_EXPORT SchemaDefinition
{
    UTF16String label;
    UTF16String description;
    UTF16String schemaText3; // label of a "schema" section of a form
    UTF16String schemaText4; // description of such a section
    UTF8String schemaNamespace;
    UTF8String schemaPrefix;
    std::vector<boost::shared_ptr<PropertyDefinition>> properties; // declared order
    bool schemaFlag1 = true; // a user's custom schema; loaded published schemas clear it
    bool schemaFlag2 = false;
};

// One item of a view definition: a value (made from a Path) or an item
// without a value ("section", "note", "formatter", "separator", "schema"),
// made from its format word.
class ZEPHMETADATA_EXPORT ViewItem
{
public:
    ViewItem() = default;
    explicit ViewItem(Path const& path);
    explicit ViewItem(UTF8String const& format);
    explicit ViewItem(char const* format);

    void AddItem(boost::shared_ptr<ViewItem> item);
    Path const& GetPath() const { return path; }
    // The localised label key; for a value without one, the label of its
    // definition.
    UTF16String GetLabel() const;
    UTF16String GetDescription() const;
    // The hint's value, or the empty string.
    UTF8String GetHint(char const* name) const;
    void SetHint(char const* name, char const* value);

    Path path;
    UTF8String format;
    UTF8String label;       // localiser key
    UTF8String description; // localiser key
    std::map<UTF8String, UTF8String> hints;
    ChoiceList choices; // override the definition's when not empty
    std::vector<boost::shared_ptr<ViewItem>> items;
};

// A named, ordered list of view items: one page of a form.
class ZEPHMETADATA_EXPORT ViewDefinition
{
public:
    ViewDefinition() = default;

    UTF16String GetLabel() const;       // localised
    UTF16String GetDescription() const; // localised

    UTF8String name; // the view id, "com.velmora.xmp.view.basic"
    UTF8String label;
    UTF8String description;
    bool hideEmptyValues = false; // what BeginView reads
    bool isRawView = false;
    std::vector<boost::shared_ptr<ViewItem>> items;
};

// The callbacks of BuildView.
class ZEPHMETADATA_EXPORT ViewBuilderInterface
{
public:
    virtual ~ViewBuilderInterface() = default;
    virtual void BeginView(ViewDefinition& definition) = 0;
    virtual bool EndView() = 0;
    // Called for each top-level item in order; true if the item was taken.
    virtual bool AddViewItem(boost::shared_ptr<ViewItem> const& item) = 0;
};

class ZEPHMETADATA_EXPORT AbstractViewBuilder : public ViewBuilderInterface
{
};

} // namespace zephmetadata

#pragma once
// View definitions: the pages of forms, loaded from definition files (the
// built-in ones and those in the user's custom definitions folder).

#include "zephmetadata/Definitions.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/shared_ptr.hpp>

namespace zephmetadata
{

// Loads the definitions if need be and reads the view definitions of the
// user's custom definitions folder again, so that views converted or copied
// there since the last call appear.
ZEPHMETADATA_EXPORT void LoadAllViewDefinitions();
// All view definitions, built-in first, in the order of their files.
ZEPHMETADATA_EXPORT IteratorRange<boost::shared_ptr<ViewDefinition>> CommonViewDefinitions();
ZEPHMETADATA_EXPORT boost::shared_ptr<ViewDefinition>
GetViewDefinitionForName(UTF8String const& name);
// BeginView, AddViewItem for each top-level item in order, EndView. A null
// definition is walked as an empty one.
ZEPHMETADATA_EXPORT void BuildView(boost::shared_ptr<ViewDefinition> definition,
                                   ViewBuilderInterface& builder);

} // namespace zephmetadata

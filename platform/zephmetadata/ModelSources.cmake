# Sources of the model half of zephmetadata: values, the exempi layer,
# providers and access, switches, error log, templates, settings files.
set(ZEPH_METADATA_MODEL_SOURCES
  src/Access.cpp
  src/CombinedHandles.cpp
  src/ErrorLog.cpp
  src/FileProvider.cpp
  src/Model.cpp
  src/MultiObjectProvider.cpp
  src/PacketFiles.cpp
  src/PropertyForms.cpp
  src/Provider.cpp
  src/Settings.cpp
  src/Switches.cpp
  src/Templates.cpp
  src/Values.cpp
  src/XmpMeta.cpp
)

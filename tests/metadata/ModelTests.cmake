# Tests of the model half of zephmetadata.
set(ZEPH_METADATA_MODEL_TESTS
  ModelTestSupport.cpp
  ErrorLogTest.cpp
  ModelTest.cpp
  ValuesTest.cpp
  XmpMetaTest.cpp
  ProviderTest.cpp
  FileProviderTest.cpp
  FileRoundTripTest.cpp
  TemplatesTest.cpp
  SettingsTest.cpp
)

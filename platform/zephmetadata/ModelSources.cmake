# Sources of the model half of zephmetadata: values, the exempi layer,
# providers and access, switches, error log, templates, settings files.
set(ZEPH_METADATA_MODEL_SOURCES
  src/ErrorLog.cpp
)

# Storage tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)
ks_add_test(storage_tests
  SOURCES
    ${CMAKE_CURRENT_SOURCE_DIR}/RecordsTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/StorageTest.cpp
  LIBS ks_storage ks_testsupport)

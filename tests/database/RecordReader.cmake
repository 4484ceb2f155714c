# RecordReader tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)
ks_add_test(record_reader_tests
  SOURCES
    ${CMAKE_CURRENT_SOURCE_DIR}/KSLDBParserTest.cpp
  LIBS ks_database ks_testsupport)

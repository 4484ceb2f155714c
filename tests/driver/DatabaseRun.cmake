# DatabaseRun tests: KSManCMD loads and rewrites database files kept under
# tests/data/database/, without a signals header.
ks_add_test(DatabaseRunTest
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/DatabaseRunTest.cpp
  LIBS ks_testsupport)
add_dependencies(DatabaseRunTest KSManCMD)

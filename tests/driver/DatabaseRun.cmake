# DatabaseRun tests: KSManCMD loads and rewrites database files kept under
# tests/data/database/, without a signals header, and runs with the command
# lines that decide which files the run reads and writes.
ks_add_test(DatabaseRunTest
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/DatabaseRunTest.cpp ${CMAKE_CURRENT_SOURCE_DIR}/RunSequenceTest.cpp
  LIBS ks_testsupport)
add_dependencies(DatabaseRunTest KSManCMD)

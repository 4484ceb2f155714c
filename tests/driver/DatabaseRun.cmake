# KSManCMD runs: database files kept under tests/data/database/ loaded and
# rewritten without a signals header, the command lines that decide which files
# a run reads and writes, and the whole job on the headers and database files
# kept under tests/data/signals/ and on the examples.
ks_add_test(RunTest SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/RunTest.cpp LIBS ks_testsupport)
target_compile_definitions(RunTest PRIVATE KS_EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples")
add_dependencies(RunTest KSManCMD)

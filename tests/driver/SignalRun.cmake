# SignalRun tests: the whole job of the built KSManCMD on headers and database
# files kept under tests/data/signals/, and on the examples.
ks_add_test(whole_job_tests
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/WholeJobTest.cpp
  LIBS ks_testsupport)
target_compile_definitions(whole_job_tests PRIVATE KS_EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples")
add_dependencies(whole_job_tests KSManCMD)

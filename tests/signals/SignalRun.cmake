# SignalRun tests: the transfer into the store and the signal run object.
ks_add_test(signal_run_tests
  SOURCES
    ${CMAKE_CURRENT_SOURCE_DIR}/TransferTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/SignalParserTest.cpp
  LIBS ks_signals ks_testsupport)

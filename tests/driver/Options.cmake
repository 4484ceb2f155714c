ks_add_test(driver_options_tests
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/CommandLineTest.cpp
  LIBS ks_driver ks_testsupport)

ks_add_test(foundation_tests
  SOURCES
    ${CMAKE_CURRENT_SOURCE_DIR}/CStringTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/CFileTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/CollectionsTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/RunContextTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/SmallBlockPoolTest.cpp
  LIBS ks_foundation ks_testsupport)

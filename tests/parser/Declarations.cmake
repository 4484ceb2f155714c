# Declarations tests: enumerations, field types, structures, unions and the
# header file driver, each parsed from a header written inline.
ks_add_test(parser_declaration_tests
  SOURCES
    ${CMAKE_CURRENT_SOURCE_DIR}/EnumTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/FieldTypesTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/StructTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/UnionTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/DriverTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/NameTableTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/PointerMapTest.cpp
  LIBS ks_parser ks_testsupport)

# The same declarations read by the built KSManCMD, compared in its database file.
ks_add_test(parser_declaration_run_tests
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/DeclarationsRunTest.cpp
  LIBS ks_testsupport)
add_dependencies(parser_declaration_run_tests KSManCMD)

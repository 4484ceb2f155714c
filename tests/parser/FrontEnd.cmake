# FrontEnd tests: the header parser's lexer, preprocessor, define table,
# constant expressions and parsed objects, driven from in-memory headers.
ks_add_test(parser_frontend_tests
  SOURCES
    ${CMAKE_CURRENT_SOURCE_DIR}/LexerTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/PreprocTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/ExprTest.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/ParsedObjectsTest.cpp
  LIBS ks_parser ks_testsupport)

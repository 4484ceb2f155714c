# Typedef chain tests: remembered chain answers against fresh walks.
ks_add_test(parser_typedef_chain_tests
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/TypedefChainTest.cpp
  LIBS ks_parser ks_testsupport)

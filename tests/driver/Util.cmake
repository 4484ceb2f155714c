# Util tests: end-to-end tests of KSManUtil's merge, header and exports
# commands; they run the built executable, so building them builds it first.
ks_add_test(UtilTest SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/UtilTest.cpp LIBS ks_testsupport)
add_dependencies(UtilTest KSManUtil)

# Util tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)
# End-to-end tests of KSManUtil's header and exports commands; they run the
# built executable, so building them builds it first.
ks_add_test(UtilHeaderTest SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/UtilHeaderTest.cpp LIBS ks_testsupport)
add_dependencies(UtilHeaderTest KSManUtil)
ks_add_test(UtilExportsTest SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/UtilExportsTest.cpp LIBS ks_testsupport)
add_dependencies(UtilExportsTest KSManUtil)

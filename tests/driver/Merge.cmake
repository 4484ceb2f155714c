# Merge tests: KSManUtil merge on the databases kept under tests/data/merge/;
# they run the built executable, so building them builds it first.
ks_add_test(MergeTest SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/MergeTest.cpp LIBS ks_testsupport)
add_dependencies(MergeTest KSManUtil)

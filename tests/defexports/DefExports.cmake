# DefExports tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)
ks_add_test(DefExportsTest SOURCES DefExportsTest.cpp LIBS ks_defexports ks_testsupport)

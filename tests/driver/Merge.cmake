# Merge tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)

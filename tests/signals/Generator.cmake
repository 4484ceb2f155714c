# Generator tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)
ks_add_test(GeneratorTest SOURCES GeneratorTest.cpp LIBS ks_signals ks_testsupport)

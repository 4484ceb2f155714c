# Writer tests: ks_add_test(<name> SOURCES <files> LIBS <libraries> ks_testsupport)
ks_add_test(DatabaseWriterTest
  SOURCES KSLDBWriterTest.cpp LineTextTest.cpp DBLoaderTest.cpp DatabaseFieldsTest.cpp
  LIBS ks_database ks_testsupport)

# Database benchmarks: ks_add_benchmark(<name> SOURCES <files> LIBS <libraries>)
ks_add_benchmark(DatabaseBench
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/DatabaseBench.cpp
  LIBS ks_database)

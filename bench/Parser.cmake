# Parser benchmarks: ks_add_benchmark(<name> SOURCES <files> LIBS <libraries>)
ks_add_benchmark(TokenizerBench
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/TokenizerBench.cpp
  LIBS ks_parser)

# Parser benchmarks: ks_add_benchmark(<name> SOURCES <files> LIBS <libraries>)
ks_add_benchmark(TokenizerBench
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/TokenizerBench.cpp
  LIBS ks_parser)
ks_add_benchmark(HeaderParseBench SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/HeaderParseBench.cpp LIBS ks_parser)

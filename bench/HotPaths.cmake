# Micro-benchmarks of the whole run's hot paths: ks_add_benchmark(<name> SOURCES <files> LIBS <libraries>)
ks_add_benchmark(HotPathsBench SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/HotPathsBench.cpp LIBS ks_parser)

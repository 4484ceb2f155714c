# Database benchmarks: ks_add_benchmark(<name> SOURCES <files> LIBS <libraries>)

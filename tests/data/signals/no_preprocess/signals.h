//OMRA DO NOT PREPROCESS
#else
typedef enum { HIDDEN } Hidden;
typedef struct { long n; } Skipped;

/* Records of the test panel: every kind of member a signal can carry. */
#define NAME_LEN 8

typedef enum { IDLE, BUSY } State;

typedef union
{
    long word;
    char bytes[4];
} Raw;

typedef struct PointTag
{
    long x;
    long y;
} Point;

typedef struct RecordTag
{
    unsigned char flags;
    char name[NAME_LEN];
    long grid[3][4];
    State state;
    Raw raw;
    Point origin;
    Point PointTag;
    Other other;
    char *label;
    unsigned int ready : 1;
    unsigned int level : 4;
#ifdef WITH_EXTRA
    long extra;
#else
    short compact;
#endif
} Record, RecordAlias;

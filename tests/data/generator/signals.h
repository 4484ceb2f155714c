/* Signals of a small test target: an enumeration wider than a byte, the
   Boolean enumeration, a union used by a structure, and a structure whose
   fields need padding on a target that packs to 4 bytes. */
#define NAME_LEN 8

typedef enum
{
    MODE_OFF,
    MODE_ON = 300
} Mode;

typedef enum
{
    FALSE,
    TRUE
} Boolean;

typedef union
{
    unsigned char bytes[4];
    long word;
} Raw;

typedef struct
{
    char tag;
    short count;
    long total;
    Mode mode;
    Raw raw;
    Unknown other;
    unsigned char name[NAME_LEN];
} Sample;

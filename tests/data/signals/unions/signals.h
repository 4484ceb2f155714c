/* Values carried by the test panel: a union with a member of every kind. */
typedef struct InnerTag
{
    long count;
} Inner;

typedef union
{
    long whole;
    char half;
} InnerUnion;

typedef enum { OFF, ON } Switch;

typedef union
{
    long n;
    char bytes[4];
    struct InnerTag s;
    struct Missing m;
    Switch e;
    InnerUnion u;
    char *text;
} Value;

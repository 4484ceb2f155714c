/* Colours and modes of the test panel. */
typedef enum
{
    RED,
    GREEN = 5,
    BLUE
} Colour, Shade;

typedef enum { OLD_A = 1, OLD_B } StoredEnum;

enum Mode { MODE_OFF, MODE_ON = 0x10 };
#endif

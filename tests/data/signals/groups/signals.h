/* Signal identifiers, grouped by the block each is allocated from. */
#define DIAG_SIGNAL_BASE 0x100
#define RADIO_SIGNAL_BASE 0x200
#define TEST_SIGNAL_BASE 128

typedef enum SignalIdTag
{
    DIAG_START = DIAG_SIGNAL_BASE,
    DIAG_STOP,
    RADIO_ON = RADIO_SIGNAL_BASE,
    RADIO_OFF,
    TEST_PING = TEST_SIGNAL_BASE
} SignalId;

typedef struct { long code; } DiagStart;
typedef struct { long code; } DiagStop;
typedef struct { char level; } RadioOn;

typedef union
{
    DiagStart diagStart;
    DiagStop diagStop;
    RadioOn radioOn;
} Signal;

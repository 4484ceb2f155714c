/*
 * Signals of a small controller, written the way target headers usually are:
 * guards, macros, conditional parts, enumerations, nested records, unions.
 */
#ifndef CONTROLLER_SIGNALS_H
#define CONTROLLER_SIGNALS_H

#include <stdint.h>

#define DIAG_SIGNAL_BASE    0x100
#define GPS_SIGNAL_BASE     (DIAG_SIGNAL_BASE + 0x40)
#define MAX_SATELLITES      12
#define NAME_LEN            (8 * 2)
#define FLAG_MASK           1 << 3

typedef unsigned char   UBYTE;
typedef unsigned short  UINT16;
typedef UINT16 *        PUINT16;
typedef char            Label[NAME_LEN];
typedef int (*Callback)(void *context, int code);

/* Identifiers of every signal; the bases open the signal groups. */
typedef enum SignalIdTag
{
    DIAG_START = DIAG_SIGNAL_BASE,   // first diagnostic signal
    DIAG_RESET,
    DIAG_STATUS,
    GPS_FIX = GPS_SIGNAL_BASE,
    GPS_SATELLITES,
    LAST_SIGNAL_ID
} SignalId;

typedef enum
{
    MODE_OFF = 0,
    MODE_STANDBY = 'S',
    MODE_RUN = 1 << 2,
    MODE_TEST = -1
} Mode, OperatingMode;

#ifdef FEATURE_EXTENDED
typedef enum { EXT_A, EXT_B } Extended;
#else
typedef enum { BASIC_A = 3, BASIC_B } Basic;
#endif

OMRA EXPORTED STRUCT
typedef struct StatusTag
{
    UBYTE           mode;          /* current mode */
    UINT16          counters[4][2];
    unsigned int    ready : 1;
    unsigned int    level : 4;
    unsigned int    spare : 27;
    unsigned int    overflow : 1;
    Label           name;
    char            *text, buffer[NAME_LEN];
    struct
    {
        long        latitude;
        long        longitude;
        union
        {
            long    raw;
            UBYTE   bytes[4];
        } fix;
    } position;
    Callback        onChange;
    void            (*notify)(int);
    volatile const UINT16 guarded;
} Status, *PStatus, StatusAlias;

typedef union
{
    Status          status;
    struct StatusTag *next;
    UBYTE           bytes[sizeof(Status)];
    long            words[MAX_SATELLITES];
} StatusOrRaw;

struct Satellite
{
    UBYTE   id;
    signed  snr;
    unsigned elevation;
    Mode    mode;
#define SAT_FLAGS 3
    UBYTE   flags[SAT_FLAGS];
};

typedef struct
{
    struct Satellite sats[MAX_SATELLITES];
    int              count;
} SatelliteList;

extern int ControllerInit(Callback cb);
static const char *Version = "1.0";

typedef union Signal
{
    Status          status;
    SatelliteList   satellites;
} Signal;

#endif /* CONTROLLER_SIGNALS_H */

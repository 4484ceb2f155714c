/*
 * signals.h - signals exchanged between the radio controller and its
 * diagnostics host. Every structure below is one signal; the identifiers are
 * allocated in blocks, one block per subsystem.
 */
#ifndef SIGNALS_H
#define SIGNALS_H

#define DIAG_SIGNAL_BASE    0x0100
#define RADIO_SIGNAL_BASE   0x0200
#define POWER_SIGNAL_BASE   0x0400

#define MAX_NAME_LEN        16
#define MAX_CHANNELS        8
#define SAMPLE_ROWS         2
#define SAMPLE_COLUMNS      ( MAX_CHANNELS / 2 )

typedef unsigned char  UINT8;
typedef unsigned short UINT16;
typedef unsigned long  UINT32;

/* Identifiers of all signals, grouped by subsystem. */
typedef enum SignalIdTag
{
    DIAG_PING_REQ = DIAG_SIGNAL_BASE,
    DIAG_PING_CNF,
    DIAG_TRACE_IND,

    RADIO_TUNE_REQ = RADIO_SIGNAL_BASE,
    RADIO_TUNE_CNF,
    RADIO_SAMPLES_IND,

    POWER_STATE_IND = POWER_SIGNAL_BASE
} SignalId;

typedef enum
{
    BAND_LOW,
    BAND_MID = 4,
    BAND_HIGH
} Band, RadioBand;

typedef enum { RESULT_OK, RESULT_BUSY, RESULT_FAILED = -1 } Result;

/* OMRA EXPORTED ENUM */
typedef enum
{
    POWER_OFF   = 0,
    POWER_SLEEP = 0x10,
    POWER_ON    = 0x20
} PowerState;

typedef struct DiagPingReqTag
{
    UINT32 sequence;
    UINT8  payload[MAX_NAME_LEN];
} DiagPingReq;

typedef struct DiagPingCnfTag
{
    UINT32 sequence;
    Result result;
} DiagPingCnf;

typedef struct DiagTraceIndTag
{
    UINT16 level : 3;
    UINT16 module : 5;
    UINT16 line : 8;
    char   text[MAX_NAME_LEN * 2];
} DiagTraceInd;

typedef struct ChannelTag
{
    UINT16 frequency;
    Band   band;
    struct
    {
        UINT8 gain;
        UINT8 attenuation;
    } amplifier;
} Channel;

typedef struct RadioTuneReqTag
{
    Channel channel;
    UINT8   retries;
#ifdef RADIO_FAST_TUNE
    UINT8   fastMode;
#else
    UINT32  settleTime;
#endif
} RadioTuneReq, RadioTuneRequest;

typedef struct RadioTuneCnfTag
{
    Result result;
    union
    {
        UINT32 frequency;
        UINT8  raw[4];
    } tuned;
} RadioTuneCnf;

typedef struct RadioSamplesIndTag
{
    UINT8  count;
    short  samples[SAMPLE_ROWS][SAMPLE_COLUMNS];
    Channel *source;
} RadioSamplesInd;

typedef struct PowerStateIndTag
{
    PowerState state;
    UINT32     uptime;
} PowerStateInd;

/* The payload of every signal, in identifier order. */
typedef union
{
    DiagPingReq      diagPingReq;
    DiagPingCnf      diagPingCnf;
    DiagTraceInd     diagTraceInd;
    RadioTuneReq     radioTuneReq;
    RadioTuneCnf     radioTuneCnf;
    RadioSamplesInd  radioSamplesInd;
    PowerStateInd    powerStateInd;
} Signal;

#endif /* SIGNALS_H */

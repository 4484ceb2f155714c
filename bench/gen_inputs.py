#!/usr/bin/env python3
"""Seeded generator of the whole-job benchmark inputs: a signals header of a
given number of lines and a database file of a given number of records, in the
formats KSManCMD reads. The same arguments always give the same bytes.

usage: gen_inputs.py HEADER_LINES DB_RECORDS OUT_HEADER OUT_DATABASE [SEED]
"""
import random
import sys

MACROS = 50  # array-size macros defined once at the top
PRIMITIVES = ["UINT8", "UINT16", "UINT32", "long", "short", "char", "unsigned char", "BOOL"]


def header_blocks(rng):
    """Yields blocks of header lines forever: enums, unions and structures that
    refer to the ones before them, with macros, arrays, bit-fields and
    conditional blocks, like a real signals header."""
    n = 0
    enums, unions, structs = [], [], []
    while True:
        n += 1
        kind = rng.random()
        if kind < 0.2 or not enums:
            name = "Enum%d" % n
            lines = ["typedef enum", "{"]
            for i in range(rng.randint(3, 12)):
                value = " = %d" % rng.randint(0, 70000) if i == 0 else ""
                lines.append("    %s_V%d%s," % (name.upper(), i, value))
            lines += ["    %s_LAST" % name.upper(), "} %s;" % name, ""]
            enums.append(name)
        elif kind < 0.3:
            name = "Union%d" % n
            lines = ["typedef union", "{"]
            for i in range(rng.randint(2, 6)):
                lines.append("    %s m%d;" % (rng.choice(PRIMITIVES + enums[-3:]), i))
            lines += ["} %s;" % name, ""]
            unions.append(name)
        else:
            name = "Struct%d" % n
            lines = ["typedef struct %sTag" % name, "{"]
            for i in range(rng.randint(3, 16)):
                pick = rng.random()
                if pick < 0.4:
                    lines.append("    %s f%d;" % (rng.choice(PRIMITIVES), i))
                elif pick < 0.5:
                    lines.append("    %s f%d[LEN_%d];" % (rng.choice(PRIMITIVES), i, rng.randrange(MACROS)))
                elif pick < 0.6:
                    lines.append("    long f%d[%d][%d];" % (i, rng.randint(1, 9), rng.randint(1, 9)))
                elif pick < 0.7:
                    lines.append("    UINT32 f%d : %d;" % (i, rng.randint(1, 12)))
                elif pick < 0.8:
                    lines.append("    %s f%d;" % (rng.choice(enums[-5:]), i))
                elif pick < 0.85 and unions:
                    lines.append("    %s f%d;" % (rng.choice(unions[-5:]), i))
                elif pick < 0.95 and structs:
                    lines.append("    %s f%d;" % (rng.choice(structs[-5:]), i))
                else:
                    lines += ["#ifdef FEATURE_%d" % (n % 7), "    long extra%d;" % i,
                              "#else", "    short compact%d;" % i, "#endif"]
            lines += ["} %s;" % name, ""]
            structs.append(name)
        yield lines


def write_header(path, line_count, rng):
    written = 0
    with open(path, "w") as out:
        out.write("typedef unsigned char UINT8;\ntypedef unsigned short UINT16;\n"
                  "typedef unsigned long UINT32;\ntypedef unsigned char BOOL;\n\n")
        for k in range(MACROS):
            out.write("#define LEN_%d %d\n" % (k, k + 1))
        written = 5 + MACROS
        for block in header_blocks(rng):
            if written + len(block) > line_count:
                break
            out.write("\n".join(block) + "\n")
            written += len(block)
        while written < line_count:
            out.write("/* padding */\n")
            written += 1


def database_sections(record_count, rng):
    """The sections of a database file holding record_count records, shared
    out over commands, reports, structures, enumerations and unions."""
    share = record_count // 5
    commands = ["0,%d,1,0,CMD%d,GRP%d,NAME%d,command %d text %%d" % (i, i, i % 50, i, i)
                for i in range(share)]
    reports = ['0,0,0,0,PRINTF,PRINTF,PRINTF,diagPrintf("%s")']
    reports += ['0,%d,0,%d,REP%d,GRP%d,NAME%d,diagPrintf("report %d %%d")' % (i, i % 9, i, i % 50, i, i)
                for i in range(1, share + 1)]
    nvm, enums, unions = [], [], []
    n = 0
    while len(nvm) < share:
        nvm.append("DbStruct%d,,,,,0,0,info,stored structure %d" % (n, n))
        for f in range(rng.randint(2, 8)):
            nvm.append("DbStruct%d,,f%d,UINT32,,%d,0,info," % (n, f, rng.randint(1, 4)))
        n += 1
    n = 0
    while len(enums) < share:
        for v in range(rng.randint(3, 10)):
            enums.append("DbEnum%d,DB_ENUM_%d_V%d,%d," % (n, n, v, v))
        n += 1
    n = 0
    while len(unions) < share:
        for m in range(rng.randint(2, 5)):
            unions.append("DbUnion%d,m%d,long,primitive,1,0" % (n, m))
        n += 1
    return [("DbVersion", ["1,0"]), ("EnumVals", commands), ("EnumVals", reports),
            ("Parameters", ["OSType,Linux"]), ("MonitorParams", []), ("nvm", nvm),
            ("EnumsTitle", []), ("Enums", enums), ("Unions", unions), ("Signals", []),
            ("SignalTable", []), ("Groups", []), ("UnionIdentifiers", ["DbUnion0,DB_UNION_0"])]


def write_database(path, record_count, rng):
    with open(path, "w") as out:
        for keyword, lines in database_sections(record_count, rng):
            out.write(keyword + "\n")
            for line in lines:
                out.write(line + "\n")
            out.write("<end>\n")


def main():
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    seed = int(sys.argv[5]) if len(sys.argv) > 5 else 7
    write_header(sys.argv[3], int(sys.argv[1]), random.Random(seed))
    write_database(sys.argv[4], int(sys.argv[2]), random.Random(seed + 1))


if __name__ == "__main__":
    main()

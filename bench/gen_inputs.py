#!/usr/bin/env python3
"""Seeded generator of the whole-job benchmark inputs: a signals header of a
given number of lines and a database file of a given number of records, in the
formats KSManCMD reads. The same arguments always give the same bytes.

usage: gen_inputs.py HEADER_LINES DB_RECORDS OUT_HEADER OUT_DATABASE [SEED]
"""
import random
import sys

MACRO_LIMIT = 4000  # the header parser's define table holds 5,000 entries per file
FEATURES = 8  # FEATURE_0 to FEATURE_3 are defined, the others are not
PRIMITIVES = ["UINT8", "UINT16", "UINT32", "INT8", "INT16", "INT32", "long", "short", "char",
              "unsigned char", "unsigned short", "unsigned long", "signed char", "BOOL", "int",
              "unsigned int"]
WORDS = ["counter", "status", "length", "offset", "mode", "flags", "index", "level", "timer",
         "result", "channel", "power", "period", "address", "handle", "sequence", "request",
         "threshold", "sample", "window", "retries", "priority", "version", "checksum"]
NOTES = ["number of entries in use", "set by the controller", "reserved for later use",
         "in units of 10 ms", "see the interface description", "copied from the request",
         "zero when unused", "measured at the antenna port", "filled by the host",
         "index into the table above", "valid only when the flag is set", "big endian"]


class HeaderWriter:
    """Writes a signals header block by block: commented macros, enumerations,
    unions and structures with arrays, bit-fields, pointers, nested aggregates
    and conditional blocks, each referring to types declared before it, about
    34 bytes a line like a real firmware header, and valid C throughout."""

    def __init__(self, rng):
        self.rng = rng
        self.macros, self.enums, self.unions, self.structs = [], [], [], []
        self.enumerators = []

    def word(self):
        return self.rng.choice(WORDS)

    def note(self):
        return self.rng.choice(NOTES)

    def field(self, type_text, name, suffix=""):
        """One field line with its columns aligned and a trailing comment."""
        decl = "    %-15s %s%s;" % (type_text, name, suffix)
        return "%-43s /* %s */" % (decl, self.note()) if self.rng.random() < 0.5 else decl

    def doc(self, kind, name):
        return ["/*", " * %s %s: %s." % (kind, name, self.note()), " */"]

    def macro_block(self, n):
        lines = ["/* sizes of block %d */" % n]
        for k in range(self.rng.randint(4, 10)):
            name = "SIZE_%d_%d" % (n, k)
            pick = self.rng.random()
            if pick < 0.4 or not self.macros:
                value = str(self.rng.randint(1, 64))
            elif pick < 0.6:
                value = "0x%02X" % self.rng.randint(1, 64)
            elif pick < 0.8:
                value = "(%s + %d)" % (self.rng.choice(self.macros[-20:]), self.rng.randint(1, 8))
            else:
                value = "(%s * 2)" % self.rng.choice(self.macros[-20:])
            lines.append("%-39s /* %s */" % ("#define %-24s %s" % (name, value), self.note()))
            self.macros.append(name)
        return lines + [""]

    def enum_block(self, n):
        name = "Enum%d" % n
        lines = self.doc("Enumeration", name) + ["typedef enum %sTag" % name, "{"]
        count = self.rng.randint(3, 14)
        for i in range(count):
            enumerator = "%s_%s_%d" % (name.upper(), self.word().upper(), i)
            pick = self.rng.random()
            value = ""
            if i == 0 or pick < 0.15:
                value = " = %d" % self.rng.randint(0, 60000)
            elif pick < 0.25:
                value = " = 0x%04X" % self.rng.randint(0, 0x7FFF)
            elif pick < 0.3 and self.enumerators:
                value = " = %s + %d" % (self.rng.choice(self.enumerators[-30:]), self.rng.randint(1, 9))
            comma = "," if i + 1 < count else ""
            text = "    %s%s%s" % (enumerator, value, comma)
            lines.append("%-43s /* %s */" % (text, self.note()) if self.rng.random() < 0.5 else text)
            self.enumerators.append(enumerator)
        self.enums.append(name)
        return lines + ["} %s;" % name, ""]

    def union_block(self, n):
        name = "Union%d" % n
        lines = self.doc("Union", name) + ["typedef union", "{"]
        for i in range(self.rng.randint(2, 6)):
            pick = self.rng.random()
            if pick < 0.5 or not self.structs:
                lines.append(self.field(self.rng.choice(PRIMITIVES), "%s%d" % (self.word(), i)))
            elif pick < 0.7:
                lines.append(self.field(self.rng.choice(PRIMITIVES), "raw%d" % i, "[%d]" % self.rng.randint(2, 32)))
            elif pick < 0.85:
                lines.append(self.field(self.rng.choice(self.enums[-10:]), "%s%d" % (self.word(), i)))
            else:
                lines.append(self.field(self.rng.choice(self.structs[-10:]), "%s%d" % (self.word(), i)))
        self.unions.append(name)
        return lines + ["} %s;" % name, ""]

    def nested_block(self, i):
        kind = "union" if self.rng.random() < 0.3 else "struct"
        lines = ["    %s" % kind, "    {"]
        for k in range(self.rng.randint(2, 4)):
            lines.append("    " + self.field(self.rng.choice(PRIMITIVES), "%s%d" % (self.word(), k)))
        return lines + ["    } %s%d;" % ("alt" if kind == "union" else "part", i)]

    def conditional_block(self, i):
        feature = "FEATURE_%d" % self.rng.randrange(FEATURES)
        pick = self.rng.random()
        first = self.field(self.rng.choice(PRIMITIVES), "%s%d" % (self.word(), i))
        if pick < 0.5:
            return ["#ifdef %s" % feature, first, "#else",
                    self.field(self.rng.choice(PRIMITIVES), "spare%d" % i, "[2]"), "#endif"]
        if pick < 0.8:
            return ["#if defined(%s)" % feature, first, "#endif /* %s */" % feature]
        return ["#ifndef %s" % feature, first, "#endif"]

    def bitfield_block(self, i):
        lines, used = [], 0
        for k in range(self.rng.randint(2, 5)):
            width = self.rng.randint(1, 8)
            if used + width > 32:
                break
            used += width
            lines.append(self.field("UINT32", "%s%d_%d" % (self.word(), i, k), " : %d" % width))
        return lines

    def struct_field(self, i):
        pick = self.rng.random()
        name = "%s%d" % (self.word(), i)
        if pick < 0.3:
            return [self.field(self.rng.choice(PRIMITIVES), name)]
        if pick < 0.42 and self.macros:
            return [self.field(self.rng.choice(PRIMITIVES), name, "[%s]" % self.rng.choice(self.macros))]
        if pick < 0.48:
            return [self.field(self.rng.choice(PRIMITIVES), name, "[%d][%d]" % (self.rng.randint(1, 9), self.rng.randint(1, 9)))]
        if pick < 0.56:
            return self.bitfield_block(i)
        if pick < 0.66:
            return [self.field(self.rng.choice(self.enums[-20:]), name)]
        if pick < 0.7 and self.unions:
            return [self.field(self.rng.choice(self.unions[-10:]), name)]
        if pick < 0.8 and self.structs:
            return [self.field(self.rng.choice(self.structs[-20:]), name)]
        if pick < 0.83 and self.structs:
            return [self.field(self.rng.choice(self.structs[-20:]), "*p%s" % name)]
        if pick < 0.88:
            return self.nested_block(i)
        if pick < 0.95:
            return self.conditional_block(i)
        return ["    // %s" % self.note(), self.field("UINT16", name)]

    def struct_block(self, n):
        name = "Struct%d" % n
        lines = self.doc("Signal", name) + ["typedef struct %sTag" % name, "{"]
        for i in range(self.rng.randint(3, 14)):
            lines += self.struct_field(i)
        self.structs.append(name)
        return lines + ["} %s;" % name, ""]

    def blocks(self):
        """Blocks of lines forever; macros until the define table's budget is spent."""
        n = 0
        while True:
            n += 1
            kind = self.rng.random()
            if (kind < 0.08 or not self.macros) and len(self.macros) < MACRO_LIMIT:
                yield self.macro_block(n)
            elif kind < 0.28 or not self.enums:
                yield self.enum_block(n)
            elif kind < 0.36:
                yield self.union_block(n)
            else:
                yield self.struct_block(n)


PREAMBLE = """/*
 * Generated signals header for the whole-job benchmark: the same seed always
 * gives the same bytes.
 */
#ifndef GENERATED_SIGNALS_H
#define GENERATED_SIGNALS_H

typedef unsigned char  UINT8;
typedef unsigned short UINT16;
typedef unsigned long  UINT32;
typedef signed char    INT8;
typedef short          INT16;
typedef long           INT32;
typedef unsigned char  BOOL;

#define FEATURE_0
#define FEATURE_1 1
#define FEATURE_2
#define FEATURE_3 1

"""


def write_header(path, line_count, rng):
    writer = HeaderWriter(rng)
    closing = ["#endif /* GENERATED_SIGNALS_H */"]
    with open(path, "w") as out:
        out.write(PREAMBLE)
        written = PREAMBLE.count("\n")
        for block in writer.blocks():
            if written + len(block) + len(closing) > line_count:
                break
            out.write("\n".join(block) + "\n")
            written += len(block)
        while written + len(closing) < line_count:
            out.write("/* padding */\n")
            written += 1
        out.write("\n".join(closing) + "\n")


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

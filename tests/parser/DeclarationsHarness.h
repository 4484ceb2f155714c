// Parses a header written inline through the file driver and dumps what the
// parser's lists hold, one line per enumeration, structure, union and signal
// group, so that a test compares the whole result in one EXPECT_EQ.
//   enum E names=[B]: A=0 B=1
//   struct S tag=T names=[C,B]: x long int; p ptr(int) unsigned short [4][2]
//   union U: a long int; p_p ptr(struct) unsigned short
//   group DIAG=256
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

#include "CString.h"
#include "ParseS2T.h"
#include "TestSupport.h"

namespace declarations {

inline std::string Text(CString const& s) { return std::string(s.GetData(), static_cast<size_t>(s.GetLength())); }

inline char const* KindWord(int32_t kind) {
    static char const* const kWords[] = {"int", "char", "struct", "enum", "union", "ptr"};
    return kind >= 0 && kind <= 5 ? kWords[kind] : "?";
}

// Calls visit on each entry of a parser list, cast to T, in list order.
template <typename T, typename List, typename Visit>
void Each(List const& list, Visit visit) {
    for (void* pos = list.GetHeadPosition(); pos;) visit(static_cast<T*>(list.GetNext(pos)));
}

inline std::string Names(CStringList const& names) {
    std::string out;
    for (void* pos = names.GetHeadPosition(); pos;) out += "," + Text(names.GetNext(pos));
    return names.IsEmpty() ? "" : " names=[" + out.substr(1) + "]";
}

inline std::string DumpEnum(CEnum* parsed) {
    std::string out = "enum " + Text(parsed->m_strName) + Names(parsed->m_lstNames) + ":";
    Each<CDefines>(parsed->m_lstValues, [&](CDefines* value) {
        out += " " + Text(value->m_strName) + "=" + std::to_string(value->m_nValue);
    });
    return out;
}

// The members of a structure or union, "; " between them: name kind type, the
// pointed kind of a pointer, the counts and the bits.
template <typename Var, typename List>
std::string Members(List const& vars) {
    std::string out;
    Each<Var>(vars, [&](Var* field) {
        out += (out.empty() ? " " : "; ") + Text(field->m_strName) + " ";
        out += field->m_nType == FIELD_POINTER ? std::string("ptr(") + KindWord(field->m_nPointedType) + ")"
                                               : KindWord(field->m_nType);
        out += " " + Text(field->m_strType);
        if (field->m_nArraySize != 1) out += " [" + std::to_string(field->m_nArraySize) + "]";
        if constexpr (std::is_same_v<Var, CStructVar>) {
            auto const& dims = field->m_arrDims;
            for (uint32_t i = 0; i < dims.GetSize(); ++i) out += "[" + std::to_string(dims.GetAt(i)) + "]";
            if (field->m_nBitCount) out += " bits=" + std::to_string(field->m_nBitCount);
        }
    });
    return out;
}

inline std::string DumpStruct(CStruct* parsed) {
    return "struct " + Text(parsed->m_strName) + " tag=" + Text(parsed->m_strTag) + Names(parsed->m_lstNames) + ":" +
           Members<CStructVar>(parsed->m_lstVars);
}

inline std::string DumpUnion(CUnion* parsed) {
    return "union " + Text(parsed->m_strName) + ":" + Members<CUnionVar>(parsed->m_lstVars);
}

// Every list of the parser, in list order, one line each.
inline std::string Dump(CParseS2T& parser) {
    std::string out;
    Each<CEnum>(parser.m_EnumList, [&](CEnum* parsed) { out += DumpEnum(parsed) + "\n"; });
    Each<CStruct>(parser.m_StructList, [&](CStruct* parsed) { out += DumpStruct(parsed) + "\n"; });
    Each<CUnion>(parser.m_UnionList, [&](CUnion* parsed) { out += DumpUnion(parsed) + "\n"; });
    for (void* pos = parser.m_SignalGroups.GetHeadPosition(); pos;) {
        SGroup const& group = parser.m_SignalGroups.GetNext(pos);
        out += "group " + Text(group.m_strName) + "=" + std::to_string(group.m_nValue) + "\n";
    }
    return out;
}

// A parser (in signals mode unless asked otherwise) that reads headers from a scratch folder; each one
// starts from an empty process-wide define map.
class Harness {
public:
    explicit Harness(bool signalsMode = true) : m_parser(std::make_unique<CParseS2T>()) {
        g_DefinesMap.RemoveAll();
        if (signalsMode) m_parser->PexilSignalsMode();
    }

    // Writes the header to a file and runs the driver on it; returns the dump.
    std::string Parse(std::string const& header, bool exportedOnly = false) {
        std::string path = m_dir.File("h" + std::to_string(m_nFiles++) + ".h");
        testsupport::WriteFile(path, header);
        m_bResult = m_parser->ParseS2TFile(CString(path.c_str()), true, exportedOnly);
        return Dump(*m_parser);
    }
    // The same, capturing what the parse prints.
    std::string ParseCapturing(std::string const& header, std::string& printed, bool exportedOnly = false) {
        testsupport::CaptureStdout capture;
        std::string dump = Parse(header, exportedOnly);
        printed = capture.Stop();
        return dump;
    }
    std::string Typedef(char const* alias) {
        CString value;
        return m_parser->m_TypedefMap.Lookup(CString(alias), value) ? Text(value) : "<none>";
    }

    CParseS2T& Parser() { return *m_parser; }
    bool Result() const { return m_bResult; }
    std::string Folder() const { return m_dir.Path(); }

private:
    testsupport::ScratchDir m_dir;
    std::unique_ptr<CParseS2T> m_parser;
    int m_nFiles = 0;
    bool m_bResult = false;
};

// A header written inline, the dump expected of it and why the row is there.
struct Row {
    char const* header;
    char const* expected;
    char const* reason;
};

// Parses each row's header with a fresh harness and compares the whole dump.
inline void ExpectRows(std::initializer_list<Row> rows, bool signalsMode = true) {
    for (Row const& row : rows) {
        Harness h(signalsMode);
        EXPECT_EQ(row.expected, h.Parse(row.header)) << row.reason;
    }
}

}  // namespace declarations

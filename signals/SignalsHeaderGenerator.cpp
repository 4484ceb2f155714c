// CSignalParser: the generator of a C header of packed signal structures. After
// a parse it writes the parsed enumerations, then each structure preceded by
// the unions it uses, laid out for a target that packs to 4 bytes: enumeration
// fields become char or short by their value range and explicit pad_ arrays
// stand where the target compiler would pad. KSManUtil's "header" command runs
// it; a KSManCMD run does not.
#include "SignalParser.h"

#include <cstdio>
#include <string>
#include <unordered_set>

#include "GeneratorTexts.h"

using namespace generatortexts;

namespace {

// The running layout of one structure: byte offset and pad line counter. The
// offset wraps in unsigned arithmetic, so any element count is safe.
struct Layout {
    uint32_t offset = 0;
    int32_t padCount = 0;
};

// Writes a pad line when the offset is not a multiple of align (2 or 4).
void PadTo(CFile& file, Layout& layout, uint32_t align) {
    uint32_t misalign = layout.offset % align;
    if (misalign == 0) return;
    CString line;
    line.Format(kPadLine, layout.padCount++, static_cast<int32_t>(align - misalign));
    file.WriteString(line);
    layout.offset += align - misalign;
}

// Follows typedef aliases until the text is no alias. A chain that comes back
// to a text already seen stops at the last new text, so a cyclic typedef map
// cannot hang the generator.
CString ResolveAlias(CMapStringToString const& typedefs, CString text) {
    std::unordered_set<std::string> seen;
    seen.emplace(text.GetData(), static_cast<size_t>(text.GetLength()));
    CString aliased;
    while (typedefs.Lookup(text, aliased)) {
        if (!seen.emplace(aliased.GetData(), static_cast<size_t>(aliased.GetLength())).second) break;
        text = aliased;
    }
    return text;
}

// An array typedef's type text such as "char[10]": the part from "[" on goes to
// the name written ("buf" becomes "buf[10]"), the part before it, resolved,
// becomes the type. False when the type holds no "[".
bool SplitArrayType(CMapStringToString const& typedefs, CString& type, CString& name) {
    int32_t at = type.Find('[');
    if (at < 0) return false;
    name += type.Mid(at);
    type = ResolveAlias(typedefs, type.Left(at));
    return true;
}

// The declaration of a field or member that is neither an enumeration nor
// sized: pointers are written as "unsigned short"; a structure type that was
// not parsed is commented out.
CString PlainDeclaration(CSignalParser& parser, int32_t kind, CString type, CString name) {
    bool split = SplitArrayType(parser.m_TypedefMap, type, name);
    bool unknown = kind == FIELD_STRUCT && !split && !parser.FindStructByName(type);
    CString line;
    line.Format(unknown ? kUnknownStructField : kField, type.GetData(), name.GetData());
    return line;
}

CString TypeText(int32_t kind, CString const& type) {
    return kind == FIELD_POINTER ? CString(kPointerType) : type;
}

CString EnumFieldLine(CSignalParser& parser, CFile& file, CStructVar& field, Layout& layout) {
    uint32_t count = static_cast<uint32_t>(field.m_nArraySize);
    char const* name = field.m_strName.GetData();
    char const* type = field.m_strType.GetData();
    CString line;
    switch (parser.FindEnumSize(field.m_strType)) {
        case 1:
            line.Format(kCharEnumField, name, type);
            layout.offset += count;
            break;
        case 2:
            PadTo(file, layout, 2);
            line.Format(kShortEnumField, name, type);
            layout.offset += 2u * count;
            break;
        case 4:
            // Four bytes whatever the element count.
            PadTo(file, layout, 4);
            line.Format(kWideEnumField, type, name);
            layout.offset += 4;
            break;
        default:
            // Only a size mode other than the two known ones gets here: the
            // field comes out as a bare ";".
            break;
    }
    return line;
}

CString PlainFieldLine(CSignalParser& parser, CFile& file, CStructVar& field, Layout& layout) {
    CString type = TypeText(field.m_nType, field.m_strType);
    // Sized on the whole type text, before an array suffix is split off: an
    // array typedef counts as size 0 and is aligned to 4.
    int32_t size = parser.GetPrimitiveSize(type);
    if (size == 2)
        PadTo(file, layout, 2);
    else if (size == 4 || size == 0)
        PadTo(file, layout, 4);
    layout.offset += static_cast<uint32_t>(field.m_nArraySize) * static_cast<uint32_t>(size);
    return PlainDeclaration(parser, field.m_nType, type, field.m_strName);
}

CString FinishStructLine(CString const& line, CStructVar const& field) {
    CString text;
    if (field.m_nArraySize < 2) {
        text.Format(kFieldEnd, line.GetData());
        return text;
    }
    text.Format(kFirstDimension, line.GetData(), field.m_nArraySize);
    CString dimension;
    for (uint32_t i = 0; i < field.m_arrDims.GetSize(); ++i) {
        dimension.Format(kFurtherDimension, static_cast<int32_t>(field.m_arrDims.GetAt(i)));
        text += dimension;
    }
    text += kDimensionsEnd;
    return text;
}

CString UnionMemberLine(CSignalParser& parser, CUnionVar& member) {
    if (member.m_nType != FIELD_ENUM) {
        return PlainDeclaration(parser, member.m_nType, TypeText(member.m_nType, member.m_strType), member.m_strName);
    }
    char const* name = member.m_strName.GetData();
    char const* type = member.m_strType.GetData();
    CString line;
    switch (parser.FindEnumSize(member.m_strType)) {
        case 1:
            line.Format(kCharEnumField, name, type);
            break;
        case 2:
            line.Format(kShortEnumMember, name);
            break;
        case 4:
            line.Format(kWideEnumField, type, name);
            break;
        default:
            break;
    }
    return line;
}

bool IsSkippedStruct(CString const& name) {
    for (char const* skipped : kSkippedStructs) {
        if (name == skipped) return true;
    }
    return false;
}

}  // namespace

bool CSignalParser::GenerateSignalsHFile(CString path) {
    if (!m_fileOut.Open(path, kOpenFlags)) {
        std::printf(kCouldNotOpen, path.GetData());
        return false;
    }
    WriteProlog(m_fileOut);
    WriteDefines(m_fileOut);
    for (void* pos = m_StructList.GetHeadPosition(); pos;) {
        CObject* object = m_StructList.GetNext(pos);
        if (!object || object->GetObjTypes() != OBJ_STRUCT) continue;
        CStruct& record = *static_cast<CStruct*>(object);
        if (IsSkippedStruct(record.m_strName)) continue;
        // A union is written before every structure that uses it, and once
        // per field that uses it: the same union can appear many times.
        CStringList unions;
        ContainsUnion(&record, unions);
        for (void* at = unions.GetHeadPosition(); at;) {
            CUnion* used = FindUnionByName(unions.GetNext(at));
            if (used) WriteUnion(m_fileOut, *used);
        }
        WriteStruct(m_fileOut, record);
    }
    WriteEpilog(m_fileOut);
    m_fileOut.Close();
    return true;
}

// The guard is the path as given, directories and all, cut before its last
// "." and upper-cased: "out/sig.h" guards with "OUT/SIG_H". A path without a
// "." is cut to nothing and guards with a bare "_H".
void CSignalParser::WriteProlog(CFile& file) {
    CString path = file.GetFileName();
    CString line;
    line.Format(kPrologComment, path.GetData());
    file.WriteString(line);
    CString guard = path.Left(path.ReverseFind('.'));
    guard.MakeUpper();
    line.Format(kGuardIfndef, guard.GetData());
    file.WriteString(line);
    line.Format(kGuardDefine, guard.GetData());
    file.WriteString(line);
    file.WriteString(kPackPush);
}

void CSignalParser::WriteDefines(CFile& file) {
    for (void* pos = m_EnumList.GetHeadPosition(); pos;) {
        CObject* object = m_EnumList.GetNext(pos);
        if (!object || object->GetObjTypes() != OBJ_ENUM) continue;
        CEnum& record = *static_cast<CEnum*>(object);
        char const* name = record.m_strName.GetData();
        CString text;
        text.Format(kEnumHead, name, name);
        file.WriteString(text);
        // The enumerators of "Boolean" are renamed in the parsed enumeration
        // itself, so generating twice appends the suffix twice.
        bool rename = record.m_strName == kBooleanEnum;
        for (void* at = record.m_lstValues.GetHeadPosition(); at;) {
            CObject* entry = record.m_lstValues.GetNext(at);
            if (!entry || entry->GetObjTypes() != OBJ_DEFINE) continue;
            CDefines& value = *static_cast<CDefines*>(entry);
            if (rename) {
                CString renamed;
                renamed.Format(kBooleanSuffix, value.m_strName.GetData());
                value.m_strName = renamed;
            }
            text.Format(at ? kEnumerator : kLastEnumerator, value.m_strName.GetData(), value.m_nValue);
            file.WriteString(text);
        }
        CString declarators = record.m_strName;
        for (void* at = record.m_lstNames.GetHeadPosition(); at;) {
            declarators += kNextDeclarator;
            declarators += record.m_lstNames.GetNext(at);
        }
        text.Format(kTypeTail, declarators.GetData());
        file.WriteString(text);
    }
}

void CSignalParser::WriteUnion(CFile& file, CUnion& record) {
    char const* name = record.m_strName.GetData();
    CString text;
    text.Format(kUnionHead, name, name);
    file.WriteString(text);
    for (void* pos = record.m_lstVars.GetHeadPosition(); pos;) {
        CUnionVar* member = record.m_lstVars.GetNext(pos);
        if (!member) continue;
        if (ContainsReservedWords(member->m_strName)) member->m_strName += "_";
        CString line = UnionMemberLine(*this, *member);
        if (member->m_nArraySize < 2)
            text.Format(kFieldEnd, line.GetData());
        else
            text.Format(kMemberArrayEnd, line.GetData(), member->m_nArraySize);
        file.WriteString(text);
    }
    text.Format(kTypeTail, name);
    file.WriteString(text);
}

void CSignalParser::WriteStruct(CFile& file, CStruct& record) {
    if (record.m_strName.IsEmpty()) return;
    char const* name = record.m_strName.GetData();
    CString text;
    text.Format(kStructHead, name, name);
    file.WriteString(text);
    Layout layout;
    for (void* pos = record.m_lstVars.GetHeadPosition(); pos;) {
        CObject* object = record.m_lstVars.GetNext(pos);
        if (!object || object->GetObjTypes() != OBJ_STRUCTVAR) continue;
        CStructVar& field = *static_cast<CStructVar*>(object);
        if (ContainsReservedWords(field.m_strName)) field.m_strName += "_";
        CString line = field.m_nType == FIELD_ENUM ? EnumFieldLine(*this, file, field, layout)
                                                   : PlainFieldLine(*this, file, field, layout);
        file.WriteString(FinishStructLine(line, field));
    }
    // The closing pad up to the next multiple of 4 is worked out but
    // deliberately left out of the header: generated headers end their
    // structures without it.
    CString closingPad;
    if (layout.offset % 4 != 0) closingPad.Format(kClosingPad, static_cast<int32_t>(4 - layout.offset % 4));
    CString names = record.m_strName;
    for (void* pos = record.m_lstNames.GetHeadPosition(); pos;) {
        names += ",";
        names += record.m_lstNames.GetNext(pos);
    }
    text.Format(kTypeTail, names.GetData());
    file.WriteString(text);
}

void CSignalParser::WriteEpilog(CFile& file) {
    file.WriteString(kPackPop);
    file.WriteString(kGuardEnd);
}

// "unsigned" takes nine characters with it (the blank after it), "signed" only
// six; then char is 1, short 2, long 4, and every other name, "int" and
// "UINT32" included, counts 0.
int32_t CSignalParser::GetPrimitiveSize(CString const& type) {
    CString text = type;
    if (text.Left(8).CompareNoCase("unsigned") == 0)
        text = text.Mid(9);
    else if (text.Left(6).CompareNoCase("signed") == 0)
        text = text.Mid(6);
    text.TrimLeft();
    if (text.CompareNoCase("char") == 0) return 1;
    if (text.CompareNoCase("short") == 0) return 2;
    if (text.CompareNoCase("long") == 0) return 4;
    return 0;
}

// Only the object's own fields or members are looked at, not the unions
// inside them; the list is not cleared first.
bool CSignalParser::ContainsUnion(CObject* object, CStringList& names) {
    if (object && object->GetObjTypes() == OBJ_STRUCT) {
        CStruct* record = static_cast<CStruct*>(object);
        for (void* pos = record->m_lstVars.GetHeadPosition(); pos;) {
            CObject* field = record->m_lstVars.GetNext(pos);
            if (!field || field->GetObjTypes() != OBJ_STRUCTVAR) continue;
            CStructVar* var = static_cast<CStructVar*>(field);
            if (var->m_nType == FIELD_UNION) names.AddTail(var->m_strType);
        }
    } else if (object && object->GetObjTypes() == OBJ_UNION) {
        CUnion* record = static_cast<CUnion*>(object);
        for (void* pos = record->m_lstVars.GetHeadPosition(); pos;) {
            CUnionVar* member = record->m_lstVars.GetNext(pos);
            if (member && member->m_nType == FIELD_UNION) names.AddTail(member->m_strType);
        }
    }
    return !names.IsEmpty();
}

bool CSignalParser::ContainsReservedWords(CString& name) {
    for (char const* word : kReservedWords) {
        if (name == word) return true;
    }
    return false;
}

// CParseS2T: construction, destruction and the small text and progress
// helpers. The parser object is built once per run and may parse several
// headers; its parsed objects live until it is destroyed here.
#include "ParseS2T.h"

#include <cstdio>

#include "ParserTexts.h"

CParseS2T::CParseS2T() {
    m_nIntBits = 32;
    m_IfStack.RemoveAll();
    InitReservedKeywordsList();
}

CParseS2T::~CParseS2T() {
    // Each kind is deleted through its own type: only CEnum has a virtual destructor.
    for (void* pos = m_StructList.GetHeadPosition(); pos;) delete static_cast<CStruct*>(m_StructList.GetNext(pos));
    for (void* pos = m_EnumList.GetHeadPosition(); pos;) delete static_cast<CEnum*>(m_EnumList.GetNext(pos));
    for (void* pos = m_UnionList.GetHeadPosition(); pos;) delete static_cast<CUnion*>(m_UnionList.GetNext(pos));
}

void CParseS2T::InitReservedKeywordsList() {
    // Each added at the head, so the list reads long, short, char, int.
    m_ReservedKeywords.AddHead("int");
    m_ReservedKeywords.AddHead("char");
    m_ReservedKeywords.AddHead("short");
    m_ReservedKeywords.AddHead("long");
}

CString CParseS2T::PPIntToStr(int32_t n) {
    CString text;
    text.Format("%d", n);
    return text;
}

bool CParseS2T::IsQuoted(CString const& s) {
    int32_t length = s.GetLength();
    return length > 0 && s.GetAt(0) == '\'' && s.GetAt(length - 1) == '\'';
}

void CParseS2T::UnQuote(CString& s) { s = s.Mid(1, s.GetLength() - 2); }

void CParseS2T::PrintProgress(int32_t done, int32_t total) {
    // Computed as the 32-bit target did, wrapping; no total counts as 0 percent
    // rather than dividing by zero.
    int32_t scaled = static_cast<int32_t>(static_cast<uint32_t>(done) * 100u);
    int32_t percent = 0;
    if (total == -1 && scaled == INT32_MIN) percent = INT32_MIN;
    else if (total != 0) percent = scaled / total;
    std::printf(kMsgProgress, percent);
}

void CParseS2T::AddDSFile(CString const& name) {
    if (!m_pDSFiles) return;
    for (void* pos = m_pDSFiles->GetHeadPosition(); pos;) {
        if (m_pDSFiles->GetNext(pos).CompareNoCase(name) == 0) return;
    }
    m_pDSFiles->AddTail(name);
}

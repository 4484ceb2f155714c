// Construction, copying and the deep destruction of the parsed type objects.
#include "ParsedObjects.h"

CEnum::~CEnum() {
    while (!m_lstValues.IsEmpty()) delete static_cast<CDefines*>(m_lstValues.RemoveHead());
}

int32_t CEnum::FindVal(CString const& name) const {
    for (void* pos = m_lstValues.GetHeadPosition(); pos;) {
        CDefines* value = static_cast<CDefines*>(m_lstValues.GetNext(pos));
        if (value && value->m_strName == name) return value->m_nValue;
    }
    return kNoValue;
}

CStruct::~CStruct() {
    while (!m_lstVars.IsEmpty()) delete static_cast<CStructVar*>(m_lstVars.RemoveHead());
}

CUnionVar::CUnionVar(CUnionVar const* src)
    : m_nType(src->m_nType),
      m_nPointedType(src->m_nPointedType),
      m_nArraySize(src->m_nArraySize),
      m_strName(src->m_strName),
      m_strType(src->m_strType) {}

CUnion::~CUnion() {
    for (void* pos = m_lstVars.GetHeadPosition(); pos;) delete m_lstVars.GetNext(pos);
}

void CUnion::CopyVars(CList<CUnionVar*>& src) {
    for (void* pos = src.GetHeadPosition(); pos;) {
        CUnionVar* member = src.GetNext(pos);
        if (member) m_lstVars.AddTail(new CUnionVar(member));
    }
}

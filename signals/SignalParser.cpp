// CSignalParser: construction and the fixed sequence of the signal run. One
// object per run: it parses the signals header named on the command line and
// transfers enumerations, unions, structures and signal groups into the store,
// in that order, because each later kind may refer to the earlier ones by name.
#include "SignalParser.h"

#include <cstdio>

#include "SignalTexts.h"
#include "Storage.h"

using namespace signaltexts;

CSignalParser::CSignalParser(CString& signalsFile, CStorage& storage, CompilerTypesEnumSize enumSize)
    : CParseS2T(), m_strSignalsFile(signalsFile) {
    SetStorage(&storage);
    PexilSignalsMode();
    m_nEnumSize = enumSize;
}

// The members go in reverse order, then the base frees the parsed objects.
CSignalParser::~CSignalParser() = default;

bool CSignalParser::ParseSignals(CStorage&) {
    if (!ParseS2TFile(m_strSignalsFile, true, false)) {
        m_strError.Format(kCouldNotOpenSignals, m_strSignalsFile.GetData());
        return false;
    }
    std::printf(kDone);
    if (!WriteEnums()) {
        m_strError.Format(kErrorWritingEnums, GetLastError().GetData());
        return false;
    }
    WriteUnions();
    // Whatever escapes the structure transfer ends the stage; what was
    // transferred before stays in the store.
    try {
        WriteDB();
    } catch (...) {
        return false;
    }
    WriteVersion();
    std::printf(kDone);
    WriteSignalGroups();
    std::printf(kDone);
    return BuildSignalTable();
}

int32_t CSignalParser::FindEnumSize(CString& name) {
    if (m_nEnumSize == ENUM_SIZE_FOUR_BYTES) return 4;
    if (m_nEnumSize != ENUM_SIZE_BY_RANGE) return -1;
    CEnum* parsed = FindEnumByName(name);
    // Callers ask only for parsed enumerations; an unknown name is sized like an
    // empty enumeration instead of being dereferenced.
    if (!parsed) return 1;
    int32_t smallest = INT32_MAX;
    int32_t largest = INT32_MIN;
    for (void* pos = parsed->m_lstValues.GetHeadPosition(); pos;) {
        CObject* object = parsed->m_lstValues.GetNext(pos);
        if (!object || object->GetObjTypes() != OBJ_DEFINE) continue;
        int32_t value = static_cast<CDefines*>(object)->m_nValue;
        if (value < smallest) smallest = value;
        if (value > largest) largest = value;
    }
    // The signed bounds are -127 and 126, one short of the full byte range at
    // both ends; kept so that generated headers keep the sizes they always had.
    if (smallest < 0) return smallest >= -127 && largest <= 126 ? 1 : 2;
    return largest <= 255 ? 1 : 2;
}

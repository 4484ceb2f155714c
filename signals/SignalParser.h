// The signal run: the header parser extended by the few members one run needs.
// It parses the signals header, transfers the parsed types into the store in a
// fixed order, and can print them back as a C header of packed structures.
#pragma once

#include <cstdint>

#include "CFile.h"
#include "CString.h"
#include "Collections.h"
#include "ParseS2T.h"

class CStorage;

// How the target compiler sizes enumerations: 0 by value range (1 or 2 bytes),
// 1 always 4 bytes (the compiler "BRANTOVE").
enum CompilerTypesEnumSize : int32_t {
    ENUM_SIZE_BY_RANGE = 0,
    ENUM_SIZE_FOUR_BYTES = 1,
};

class CSignalParser : public CParseS2T {
public:
    CSignalParser(CString& signalsFile, CStorage& storage, CompilerTypesEnumSize enumSize);
    ~CSignalParser() override;

    // ---- the signal run (SignalParser.cpp)
    // The whole signal stage; true on success, else m_strError says why. The
    // argument is not used: records go to the store given at construction.
    bool ParseSignals(CStorage& storage);
    // Storage size in bytes of a parsed enumeration under the current mode.
    int32_t FindEnumSize(CString& name);

    // ---- the signals header generator (SignalsHeaderGenerator.cpp)
    bool GenerateSignalsHFile(CString path);
    void WriteProlog(CFile& file);
    void WriteDefines(CFile& file);
    void WriteUnion(CFile& file, CUnion& record);
    void WriteStruct(CFile& file, CStruct& record);
    void WriteEpilog(CFile& file);
    int32_t GetPrimitiveSize(CString const& type);
    bool ContainsUnion(CObject* object, CStringList& names);
    bool ContainsReservedWords(CString& name);
    using CParseS2T::WriteStruct;

    CString m_strSignalsFile;
    CStringList m_lstWritten;
    CFile m_fileOut;
    CString m_strError;
    CompilerTypesEnumSize m_nEnumSize;
};

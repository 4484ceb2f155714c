// The records: initial values, the enumeration size rule, record equality as
// the header merge uses it, the field cursors and the documentation setters.
#include "Records.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

stStructVar Field(char const* name, int32_t dimCount, std::vector<int32_t> dims = {}) {
    stStructVar field;
    field.m_strName = name;
    field.m_nDimCount = dimCount;
    for (size_t i = 0; i < dims.size(); ++i) field.m_nDim[i] = dims[i];
    return field;
}

TEST(stEnum, SizeRuleGrowsAndNeverShrinks) {
    struct Row {
        std::vector<int32_t> values;
        int32_t expected;
        char const* reason;
    } rows[] = {
        {{0, 255}, 1, "fits a byte"},
        {{0, 255, 256}, 2, "past a byte"},
        {{0, 255, 256, 65535}, 2, "still fits a short"},
        {{0, 255, 256, 65536}, 4, "past a short"},
        {{65536, 3}, 4, "a later small value leaves it"},
        {{-1, 127}, 1, "fits a signed byte"},
        {{-1, 128}, 2, "past a signed byte upwards"},
        {{-128}, 1, "lowest signed byte"},
        {{-129}, 2, "past a signed byte downwards"},
        {{-32768, 32767}, 2, "fits a signed short"},
        {{-32769}, 4, "past a signed short downwards"},
        {{200, -1}, 2, "a negative makes 200 too big for a byte"},
        {{40000, -5}, 4, "a negative makes 40000 too big for a short"},
    };
    for (auto const& row : rows) {
        stEnum record;
        for (int32_t v : row.values) record.AddField("X", v);
        EXPECT_EQ(row.expected, record.m_nSizeof) << row.reason;
    }
}

TEST(stEnum, SetInitValRunsSizeRule) {
    stEnum record;
    record.SetInitVal(300);
    EXPECT_EQ(300, record.GetInitVal());
    EXPECT_EQ(2, record.m_nSizeof);
    EXPECT_EQ(0u, record.m_Fields.GetSize());
}

TEST(stEnum, ClearRestoresInitialValues) {
    stEnum record;
    record.m_strName = "E";
    record.m_Aliases.AddTail("F");
    record.m_bHasTitle = true;
    record.AddField("A", -70000, "doc");
    record.Clear();
    EXPECT_EQ(-1, record.m_nInitVal);
    EXPECT_EQ(1, record.m_nSizeof);
    EXPECT_EQ(-1, record.m_nMaxVal);
    EXPECT_EQ(0, record.m_nMinVal);
    EXPECT_FALSE(record.m_bHasNegative || record.m_bHasTitle || record.m_bFlag);
    EXPECT_TRUE(record.m_strName.IsEmpty() && record.m_Aliases.IsEmpty() && record.m_Fields.IsEmpty());
}

TEST(stEnum, CursorCopyAndEquality) {
    stEnum a;
    a.m_strName = "E";
    a.AddField("A", 1, "one");
    a.AddField("B", 2);
    stEnum b;
    b.m_strName = "E";
    b.CopyVars(a);
    b.CopyVars(b);  // copying itself doubles the list
    EXPECT_EQ(4u, b.m_Fields.GetSize());

    std::string seen;
    CString name, doc;
    int32_t value = 0;
    for (void* pos = b.GetFirstFieldPosition(); b.GetNextField(name, value, doc, pos);) {
        seen += std::string(name) + "=" + std::to_string(value) + ":" + std::string(doc) + " ";
    }
    EXPECT_EQ("A=1:one B=2: A=1:one B=2: ", seen);

    b.m_Fields.RemoveAt(2, 3);
    b.m_Fields.GetAt(1).m_strDescription = "other doc";  // descriptions do not count
    EXPECT_TRUE(a == b);
    b.m_strName = "F";
    EXPECT_FALSE(a == b);
}

TEST(stEnum, IsAllDocExistNeedsEveryDescription) {
    stEnum record;
    record.AddField("A", 1, "one");
    EXPECT_FALSE(record.IsAllDocExist());  // no enumeration description
    record.m_strDescription = "d";
    EXPECT_TRUE(record.IsAllDocExist());
    record.AddField("B", 2);
    EXPECT_FALSE(record.IsAllDocExist());
}

TEST(stStructVar, EqualityTreatsDimCountsZeroAndOneAlike) {
    struct Row {
        stStructVar a, b;
        bool expected;
        char const* reason;
    } rows[] = {
        {Field("f", 0), Field("f", 1), true, "scalar against array of one"},
        {Field("f", 1), Field("f", 0), true, "and the other way round"},
        {Field("f", 1), Field("f", 2), false, "counts 1 and 2"},
        {Field("f", 2, {3, 4}), Field("f", 2, {3, 4}), true, "same dimensions"},
        {Field("f", 2, {3, 4}), Field("f", 2, {3, 5}), false, "second dimension differs"},
        {Field("f", 1, {1, 7}), Field("f", 1, {1, 9}), true, "entries past the count do not count"},
        {Field("f", 0), Field("g", 0), false, "names differ"},
    };
    for (auto const& row : rows) EXPECT_EQ(row.expected, row.a == row.b) << row.reason;

    stStructVar a = Field("f", 0), b = Field("f", 0);
    b.m_strType = "T";
    b.m_strDescription = "doc";
    EXPECT_TRUE(a == b) << "type name and documentation do not count";
    b.m_strTypeText = "int";
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(stStructVar(true) != stStructVar(false));
}

TEST(stStructVar, ConstructorAndDocumentation) {
    stStructVar field(true);
    EXPECT_TRUE(field.m_bSignal);
    EXPECT_EQ(0, field.m_nDimCount);
    for (int32_t dim : field.m_nDim) EXPECT_EQ(1, dim);
    field.m_strDescription = "d";
    field.m_strMode = "m";
    EXPECT_FALSE(field.IsAllDocExist());
    field.m_strUnit = "u";
    EXPECT_TRUE(field.IsAllDocExist());
}

TEST(stStruct, FieldsCursorAndSetters) {
    stStruct record;
    record.SetUnit("ignored");  // no field yet: nothing happens
    EXPECT_EQ(0u, record.m_Fields.GetSize());
    stStructVar* first = record.GetNewField();
    first->m_strName = "a";
    stStructVar second = Field("b", 2);
    record.AddField(&second);
    record.SetDescription("on b");
    record.SetMode("m");
    record.SetDependency("dep");
    std::string seen;
    void* pos = record.GetFirstFieldPosition();
    while (stStructVar* field = record.GetNextField(pos)) {
        seen += std::string(field->m_strName) + ":" + std::string(field->m_strDescription) + " ";
    }
    EXPECT_EQ("a: b:on b ", seen);
    EXPECT_EQ(nullptr, record.GetNextField(pos));
    EXPECT_EQ("dep", std::string(record.m_Fields.GetTail().m_strDependency));
    record.CancelLastField();
    EXPECT_EQ(1u, record.m_Fields.GetSize());
}

TEST(stStruct, EqualityIgnoresAliasesFlagAndDocumentation) {
    stStruct a;
    a.m_strName = "S";
    stStructVar x = Field("x", 0);
    a.AddField(&x);
    stStruct b(a);
    b.m_Aliases.AddTail("T");
    b.m_nFlag = 1;
    b.m_strDescription = "doc";
    EXPECT_TRUE(a == b);
    b.GetNewField();
    EXPECT_TRUE(a != b);
    stUnion u;
    u.m_nSelector = 4;
    u.m_strSelector = "sel";
    u.Clear();
    EXPECT_EQ(0, u.m_nSelector);
    EXPECT_TRUE(u.m_strSelector.IsEmpty());
}

TEST(stMessage, FullNameAndReportDefaults) {
    stReport report;
    report.m_strCat1 = "A";
    report.m_strCat3 = "C";
    EXPECT_EQ("A____C", std::string(report.GetFullName()));
    EXPECT_EQ(0, report.m_nFilterState);
    stReport::m_bDefaultFiltered = true;
    EXPECT_EQ(1, stReport().m_nFilterState);
    stReport::m_bDefaultFiltered = false;
    EXPECT_EQ(3, report.m_nReserved2);
    EXPECT_EQ(-1, report.m_nReserved4);
}

}  // namespace

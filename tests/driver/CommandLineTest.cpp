// The KSManCMD command line: option names without case, glued values, bare
// arguments and the ".exe" rule, -E, -X, -C; the banner and list files.
#include "CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestSupport.h"

namespace {

std::string Join(CStringList const& list) {
    std::string out;
    for (void* pos = list.GetHeadPosition(); pos;) out += std::string("[") + list.GetNext(pos).GetData() + "]";
    return out;
}

CommandLineOptions Parse(std::vector<std::string> args) {
    std::vector<char*> argv{const_cast<char*>("KSManCMD")};
    for (auto& arg : args) argv.push_back(arg.data());
    excludeDirsList.RemoveAll();
    CommandLineOptions options;
    ParseCommandLine(static_cast<int>(argv.size()), argv.data(), options);
    return options;
}

TEST(CommandLine, OptionNamesIgnoreCaseAndTheLastValueWins) {
    CommandLineOptions options = Parse({"-nfoo.txt", "-Nbar.txt", "-sH.h", "-Ddefs"});
    EXPECT_STREQ("bar.txt", options.m_strDatabase.GetData());
    EXPECT_STREQ("H.h", options.m_strSignals.GetData());
    EXPECT_STREQ("defs", options.m_strDefinitions.GetData());
}

TEST(CommandLine, ValueMustBeGluedToItsOption) {
    CommandLineOptions options = Parse({"-S", "hdr.h"});
    EXPECT_STREQ("", options.m_strSignals.GetData());
    EXPECT_EQ("[hdr.h]", Join(options.m_InputFiles));
}

TEST(CommandLine, BareArgumentsDropExeFiles) {
    CommandLineOptions options = Parse({"tool.EXE", "x.exe", "x.exe2", "-Z", "a"});
    EXPECT_EQ("[x.exe2][-Z][a]", Join(options.m_InputFiles));
}

TEST(CommandLine, OnlyBrantoveSelectsFourByteEnumsAndNothingResetsIt) {
    struct Row {
        std::vector<std::string> args;
        CompilerTypesEnumSize mode;
    } rows[] = {
        {{"-Cbrantove"}, ENUM_SIZE_FOUR_BYTES},
        {{"-CBRANTOVE2"}, ENUM_SIZE_BY_RANGE},
        {{"-C"}, ENUM_SIZE_BY_RANGE},
        {{"-CBRANTOVE", "-Cother"}, ENUM_SIZE_FOUR_BYTES},
    };
    for (auto const& row : rows) EXPECT_EQ(row.mode, Parse(row.args).m_nEnumSize) << row.args[0];
}

TEST(CommandLine, ExtendedFlagAndExcludeDirs) {
    for (char const* arg : {"-E", "-E1", "-ex"}) EXPECT_EQ(1, Parse({arg}).m_nExtended) << arg;
    EXPECT_EQ(0, Parse({}).m_nExtended);
    Parse({"-Xone", "-xtwo"});
    EXPECT_EQ("[one][two]", Join(excludeDirsList));
}

TEST(CommandLine, OutputStartsAtTheFixedDefault) {
    EXPECT_STREQ("h:\\ks\\ds\\data\\ks_ds_in.ksp", Parse({}).m_strOutput.GetData());
    EXPECT_STREQ("o.ksp", Parse({"-Oo.ksp"}).m_strOutput.GetData());
}

TEST(CommandLine, BannerStoresTheVersion) {
    stData data;
    CString banner = GetProductNameAndVersion(nullptr, data);
    EXPECT_STREQ("KSManCMD version 2.1.5.26 (linux)", banner.GetData());
    EXPECT_STREQ("2.1.5.26", data.m_strVersion.GetData());
    GetReleaseName(data, CString("ignored"));
    EXPECT_STREQ("Linux", data.m_strReleaseName.GetData());
}

TEST(GetListFromFile, SplitsLinesLongerThan255) {
    testsupport::ScratchDir dir;
    testsupport::WriteFile(dir.File("list"), "a\r\n" + std::string(300, 'b') + "\nc");
    CStringList list;
    stData data;
    EXPECT_NE(0, GetListFromFile(dir.File("list").c_str(), list, &data));
    EXPECT_EQ("[a\r][" + std::string(255, 'b') + "][" + std::string(45, 'b') + "][c]", Join(list));
}

TEST(GetListFromFile, MissingFileIsFatalAtTheDefaultLevel) {
    CStringList list;
    stData data;
    testsupport::CaptureStdout capture;
    EXPECT_EQ(0, GetListFromFile("/nonexistent/list.txt", list, &data));
    EXPECT_EQ("Can't open input file /nonexistent/list.txt\n", capture.Stop());
    EXPECT_TRUE(data.m_bFatalError);
    EXPECT_STREQ("Can't open input file /nonexistent/list.txt", data.m_strFatalError.GetData());
    stData lenient;
    lenient.m_nFatalLevel = 1;
    testsupport::CaptureStdout quiet;
    EXPECT_NE(0, GetListFromFile("/nonexistent/list.txt", list, &lenient));
    quiet.Stop();
    EXPECT_FALSE(lenient.m_bFatalError);
}

}  // namespace

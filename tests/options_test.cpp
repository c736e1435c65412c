// options.ini: the profile reader and writer, the options with their defaults,
// load warnings and saving, and the checks of the Options dialog.
#include "options/memory_limit.h"
#include "options/options.h"
#include "options/options_dialog_check.h"
#include "options/options_dialog_texts.h"
#include "options/profile_file.h"
#include "options/profile_int.h"
#include "options/profile_text.h"

#include "files_on_disk.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace zorvane {
namespace {

namespace fs = std::filesystem;

Options optionsFromText(const std::string& text, std::vector<LocalizedText>* warnings = nullptr) {
    std::vector<LocalizedText> ignored;
    return ReadOptions(ProfileText(text), warnings ? *warnings : ignored);
}

// ---- Integers as the platform's profile calls read them.

TEST(ProfileInt, EmptyValueGivesTheDefault) {
    EXPECT_EQ(ReadProfileInt("", 7), 7);
}

TEST(ProfileInt, LeadingDigitsAreRead) {
    EXPECT_EQ(ReadProfileInt("12abc", 7), 12);
    EXPECT_EQ(ReadProfileInt("3 4", 7), 3);
    EXPECT_EQ(ReadProfileInt("  \t5", 7), 5);
    EXPECT_EQ(ReadProfileInt("007", 7), 7);
}

TEST(ProfileInt, GarbageGivesZero) {
    EXPECT_EQ(ReadProfileInt("abc", 7), 0);
    EXPECT_EQ(ReadProfileInt("x5", 7), 0);
    EXPECT_EQ(ReadProfileInt("-", 7), 0);
    EXPECT_EQ(ReadProfileInt("0x10", 7), 0);
    EXPECT_EQ(ReadProfileInt("1.5", 7), 1);
}

TEST(ProfileInt, OneSignIsRead) {
    EXPECT_EQ(ReadProfileInt("-1", 7), -1);
    EXPECT_EQ(ReadProfileInt("+3", 7), 3);
    EXPECT_EQ(ReadProfileInt("-12x", 7), -12);
    EXPECT_EQ(ReadProfileInt("--1", 7), 0);
    EXPECT_EQ(ReadProfileInt("- 1", 7), 0);
}

TEST(ProfileInt, DigitsWrapAt32Bits) {
    EXPECT_EQ(ReadProfileInt("2147483647", 7), INT_MAX);
    EXPECT_EQ(ReadProfileInt("2147483648", 7), INT_MIN);
    EXPECT_EQ(ReadProfileInt("4294967295", 7), -1);
    EXPECT_EQ(ReadProfileInt("4294967296", 7), 0);
    EXPECT_EQ(ReadProfileInt("-4294967295", 7), 1);
}

// ---- Reading the profile text.

TEST(ProfileText, AbsentKeyAndSectionGiveNothing) {
    const ProfileText text("[chess]\nQuickMode=0\n[other]\nLogMoves=1\n");
    EXPECT_FALSE(text.Get("chess", "LogMoves"));
    EXPECT_FALSE(text.Get("missing", "QuickMode"));
    EXPECT_EQ(text.Get("other", "LogMoves"), "1");
}

TEST(ProfileText, NamesIgnoreCaseAndBlanks) {
    const ProfileText text("  [ Chess ]  \n  quickmode  =  0  \n");
    EXPECT_EQ(text.Get("chess", "QuickMode"), "0");
}

TEST(ProfileText, OnePairOfQuotesIsDropped) {
    const ProfileText text("[chess]\na=\"x y\"\nb='z'\nc=\"q'\nd=\"\"\"\n");
    EXPECT_EQ(text.Get("chess", "a"), "x y");
    EXPECT_EQ(text.Get("chess", "b"), "z");
    EXPECT_EQ(text.Get("chess", "c"), "\"q'");
    EXPECT_EQ(text.Get("chess", "d"), "\"");
}

TEST(ProfileText, FirstOccurrenceWinsAcrossRepeatedSections) {
    const ProfileText text("[chess]\na=1\n[other]\nb=2\n[chess]\na=3\nb=4\n");
    EXPECT_EQ(text.Get("chess", "a"), "1");
    EXPECT_EQ(text.Get("chess", "b"), "4");
}

TEST(ProfileText, LinesOutsideKeysAreNotKeys) {
    const ProfileText text("a=1\n[chess]\nb\n;c=2\n=5\n");
    EXPECT_FALSE(text.Get("chess", "a"));
    EXPECT_FALSE(text.Get("chess", "b"));
    EXPECT_FALSE(text.Get("chess", "c"));
    EXPECT_FALSE(text.Get("chess", ""));
}

TEST(ProfileText, ByteOrderMarkAndCrLfAreRead) {
    const ProfileText text("\xEF\xBB\xBF[chess]\r\nQuickMode=0\r\nLogMoves=1");
    EXPECT_EQ(text.Get("chess", "QuickMode"), "0");
    EXPECT_EQ(text.Get("chess", "LogMoves"), "1");
}

TEST(ProfileText, UnchangedTextComesBackByteForByte) {
    const std::string bytes = "\xEF\xBB\xBF; comment\r\n[chess]\r\nA = 1 \r\n\r\n[x]\nlone\rline\n\n  ";
    EXPECT_EQ(ProfileText(bytes).Text(), bytes);
}

// ---- Writing the profile text.

TEST(ProfileText, SetRewritesTheKeyInPlaceAndKeepsItsSpelling) {
    ProfileText text("; mine\n[chess]\n  quickMODE = 1 \nLogMoves=0\n[other]\nQuickMode=1\n");
    text.Set("chess", "QuickMode", "0");
    EXPECT_EQ(text.Text(), "; mine\n[chess]\nquickMODE=0\nLogMoves=0\n[other]\nQuickMode=1\n");
}

TEST(ProfileText, SetAddsAKeyAfterTheLastKeyOfItsSection) {
    ProfileText text("[chess]\nA=1\n\n[other]\nB=2\n");
    text.Set("chess", "C", "3");
    EXPECT_EQ(text.Text(), "[chess]\nA=1\nC=3\n\n[other]\nB=2\n");
}

TEST(ProfileText, SetAddsTheSectionAtTheEnd) {
    ProfileText text("[other]\nB=2");
    text.Set("chess", "C", "3");
    EXPECT_EQ(text.Text(), "[other]\nB=2\n[chess]\nC=3\n");
    ProfileText empty;
    empty.Set("chess", "C", "3");
    EXPECT_EQ(empty.Text(), "[chess]\nC=3\n");
}

TEST(ProfileText, SetFollowsTheFilesLineEnds) {
    ProfileText text("[chess]\r\nA=1\r\n");
    text.Set("chess", "B", "2");
    text.Set("x", "C", "3");
    EXPECT_EQ(text.Text(), "[chess]\r\nA=1\r\nB=2\r\n[x]\r\nC=3\r\n");
}

TEST(ProfileText, SetAfterAHeaderWithoutLineBreak) {
    ProfileText text("[chess]");
    text.Set("chess", "A", "1");
    EXPECT_EQ(text.Text(), "[chess]\nA=1\n");
    EXPECT_EQ(text.Get("chess", "A"), "1");
}

// ---- Files on disk.

class OptionsOnDisk : public ::testing::Test {
  protected:
    TempFolder folder_{"zorvane_options_"};
    const fs::path dir_ = folder_.path();
    void SetUp() override { path_ = dir_ / "options.ini"; }
    void write(const std::string& bytes) const {
        std::ofstream out(path_, std::ios::binary);
        out << bytes;
    }
    std::string read() const {
        std::ifstream in(path_, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    }
    std::set<std::string> entries() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir_)) names.insert(entry.path().filename().string());
        return names;
    }
    fs::path path_;
};

TEST_F(OptionsOnDisk, MissingFileReadsAsEmpty) {
    EXPECT_EQ(ReadProfileFile(path_)->Text(), "");
}

TEST_F(OptionsOnDisk, WriteReplacesTheFileAndLeavesNoTemporaryFile) {
    write("[chess]\nA=1\n");
    ProfileText text = ReadProfileFile(path_).value();
    text.Set("chess", "A", "2");
    ASSERT_TRUE(WriteProfileFile(path_, text));
    EXPECT_EQ(read(), "[chess]\nA=2\n");
    EXPECT_EQ(entries(), std::set<std::string>{"options.ini"});
}

TEST_F(OptionsOnDisk, FailedWriteReportsFalseAndLeavesNothing) {
    EXPECT_FALSE(WriteProfileFile(dir_ / "missing" / "options.ini", ProfileText("[chess]\n")));
    EXPECT_FALSE(SaveOptions(Options{}, dir_ / "missing" / "options.ini"));
    EXPECT_FALSE(WriteOptionKey(dir_ / "missing" / "options.ini", "LanguageId", 0));
    EXPECT_TRUE(entries().empty());
}

// ---- Options: defaults and reading.

void expectDefaults(const Options& o) {
    EXPECT_EQ(o.LanguageId, 1);
    EXPECT_TRUE(o.QuickMode);
    EXPECT_FALSE(o.WarningOnLichessDataRepetition);
    EXPECT_EQ(o.SchedulerLevels, 6);
    EXPECT_TRUE(o.CheckTempRegCoherency);
    EXPECT_TRUE(o.CustomScheduler);
    EXPECT_EQ(o.ObserverLevels, 0);
    EXPECT_EQ(o.LichessLevels, 1);
    EXPECT_EQ(o.WarnAboutSecondInstanceOfProgram, 2);
    EXPECT_FALSE(o.PromptHeuristics);
    EXPECT_EQ(o.MaxMemRatioForTempReg, 20);
    EXPECT_TRUE(o.ClearRegisterOnStartSolving);
    EXPECT_EQ(o.MaxMemRatioForPrecalculatedData, 20);
    EXPECT_TRUE(o.LetAnalyzeTheSameMoveInTwoThreads);
    EXPECT_FALSE(o.CommentCompatibilityMode);
    EXPECT_TRUE(o.ShowMainVariant);
    EXPECT_FALSE(o.UseMainVariantAsSortIndications);
    EXPECT_FALSE(o.LogMoves);
    EXPECT_FALSE(o.RegisterInfoLog);
    EXPECT_FALSE(o.TryRelaxSpecialHeuristicsLog);
    EXPECT_EQ(o.MinimizeToTray, 2);
    EXPECT_EQ(o.AskForGlobalRegisterRecompression, 0);
    EXPECT_EQ(o.UseDataPackedForRandomAccess, 2);
    EXPECT_TRUE(o.GlobalRegisterForceDiskAccess);
    EXPECT_EQ(o.PrecalcPath, "");
    EXPECT_FALSE(o.AskIfSaveAfterDecompressAllToMem);
    EXPECT_EQ(o.MultithreadingLevels, 1);
    EXPECT_TRUE(o.LogToFileTmpRegLoad);
    EXPECT_FALSE(o.CustomizedVersion);
    EXPECT_FALSE(o.EnableManualEngineControl);
    EXPECT_FALSE(o.ScalingWarningDismissed);
}

TEST_F(OptionsOnDisk, UnreadableFileGivesDefaultsAndIsNotReplaced) {
    fs::create_directory(path_);
    EXPECT_FALSE(ReadProfileFile(path_));
    std::vector<LocalizedText> warnings;
    expectDefaults(LoadOptions(path_, warnings));
    EXPECT_FALSE(SaveOptions(Options{}, path_));
    EXPECT_FALSE(WriteOptionKey(path_, "LanguageId", 0));
    EXPECT_TRUE(fs::is_directory(path_));
    EXPECT_EQ(entries(), std::set<std::string>{"options.ini"});
}

TEST(Options, MembersStartAtTheDefaults) {
    expectDefaults(Options{});
}

TEST_F(OptionsOnDisk, MissingFileGivesEveryDefaultWithoutWarnings) {
    std::vector<LocalizedText> warnings;
    const Options o = LoadOptions(path_, warnings);
    expectDefaults(o);
    EXPECT_TRUE(warnings.empty());
}

TEST(Options, KeysOutsideTheChessSectionAreNotRead) {
    expectDefaults(optionsFromText("QuickMode=0\n[other]\nSchedulerLevels=2\n[chess]\n"));
}

TEST(Options, EmptyValuesGiveTheDefaults) {
    expectDefaults(
        optionsFromText("[chess]\nQuickMode=\nSchedulerLevels=\nLichessLevels=  \nPrecalcPath=\n"));
}

TEST(Options, EveryKeyIsRead) {
    const Options o =
        optionsFromText("[chess]\nLanguageId=2\nQuickMode=0\nWarningOnLichessDataRepetition=1\n"
                        "SchedulerLevels=3\nCheckTempRegCoherency=0\nCustomScheduler=0\n"
                        "ObserverLevels=4\nLichessLevels=-1\nWarnAboutSecondInstanceOfProgram=1\n"
                        "PromptHeuristics=1\nMaxMemRatioForTempReg=35\nClearRegisterOnStartSolving=0\n"
                        "MaxMemRatioForPrecalculatedData=45\nLetAnalyzeTheSameMoveInTwoThreads=0\n"
                        "CommentCompatibilityMode=1\nShowMainVariant=0\n"
                        "UseMainVariantAsSortIndications=1\nLogMoves=1\nRegisterInfoLog=1\n"
                        "TryRelaxSpecialHeuristicsLog=1\nMinimizeToTray=0\n"
                        "AskForGlobalRegisterRecompression=1\nUseDataPackedForRandomAccess=1\n"
                        "GlobalRegisterForceDiskAccess=0\nPrecalcPath=D:\\Tables\n"
                        "AskIfSaveAfterDecompressAllToMem=1\nMultithreadingLevels=1\n"
                        "LogToFileTmpRegLoad=0\nCustomizedVersion=1\nEnableManualEngineControl=1\n"
                        "ScalingWarningDismissed=1\n");
    EXPECT_EQ(o.LanguageId, 2);
    EXPECT_FALSE(o.QuickMode);
    EXPECT_TRUE(o.WarningOnLichessDataRepetition);
    EXPECT_EQ(o.SchedulerLevels, 4);
    EXPECT_FALSE(o.CheckTempRegCoherency);
    EXPECT_FALSE(o.CustomScheduler);
    EXPECT_EQ(o.ObserverLevels, 4);
    EXPECT_EQ(o.LichessLevels, -1);
    EXPECT_EQ(o.WarnAboutSecondInstanceOfProgram, 1);
    EXPECT_TRUE(o.PromptHeuristics);
    EXPECT_EQ(o.MaxMemRatioForTempReg, 35);
    EXPECT_FALSE(o.ClearRegisterOnStartSolving);
    EXPECT_EQ(o.MaxMemRatioForPrecalculatedData, 45);
    EXPECT_FALSE(o.LetAnalyzeTheSameMoveInTwoThreads);
    EXPECT_TRUE(o.CommentCompatibilityMode);
    EXPECT_FALSE(o.ShowMainVariant);
    EXPECT_TRUE(o.UseMainVariantAsSortIndications);
    EXPECT_TRUE(o.LogMoves);
    EXPECT_TRUE(o.RegisterInfoLog);
    EXPECT_TRUE(o.TryRelaxSpecialHeuristicsLog);
    EXPECT_EQ(o.MinimizeToTray, 0);
    EXPECT_EQ(o.AskForGlobalRegisterRecompression, 1);
    EXPECT_EQ(o.UseDataPackedForRandomAccess, 1);
    EXPECT_FALSE(o.GlobalRegisterForceDiskAccess);
    EXPECT_EQ(o.PrecalcPath, "D:\\Tables");
    EXPECT_TRUE(o.AskIfSaveAfterDecompressAllToMem);
    EXPECT_EQ(o.MultithreadingLevels, 1);
    EXPECT_FALSE(o.LogToFileTmpRegLoad);
    EXPECT_TRUE(o.CustomizedVersion);
    EXPECT_TRUE(o.EnableManualEngineControl);
    EXPECT_TRUE(o.ScalingWarningDismissed);
}

TEST(Options, SchedulerLevelsInUseAreTheFilesValuePlusOne) {
    EXPECT_EQ(optionsFromText("[chess]\nSchedulerLevels=5\n").SchedulerLevels, 6);
    EXPECT_EQ(optionsFromText("[chess]\nSchedulerLevels=-1\n").SchedulerLevels, 0);
    EXPECT_EQ(optionsFromText("[chess]\nSchedulerLevels=abc\n").SchedulerLevels, 1);
}

TEST(Options, SixteenBitKeysWrap) {
    EXPECT_EQ(optionsFromText("[chess]\nLichessLevels=65535\n").LichessLevels, -1);
    EXPECT_EQ(optionsFromText("[chess]\nLichessLevels=32768\n").LichessLevels, -32768);
    EXPECT_EQ(optionsFromText("[chess]\nObserverLevels=65536\n").ObserverLevels, 0);
    EXPECT_EQ(optionsFromText("[chess]\nObserverLevels=-1\n").ObserverLevels, 65535);
}

TEST(Options, FlagsAreOnForAnyNonZeroValue) {
    EXPECT_TRUE(optionsFromText("[chess]\nLogMoves=7\n").LogMoves);
    EXPECT_TRUE(optionsFromText("[chess]\nLogMoves=-1\n").LogMoves);
    EXPECT_FALSE(optionsFromText("[chess]\nQuickMode=yes\n").QuickMode); // garbage reads as 0
    EXPECT_TRUE(optionsFromText("[chess]\nQuickMode=1yes\n").QuickMode);
}

TEST(Options, MultithreadingLevelsAreReadAsAFlag) {
    EXPECT_EQ(optionsFromText("[chess]\nMultithreadingLevels=2\n").MultithreadingLevels, 1);
    EXPECT_EQ(optionsFromText("[chess]\nMultithreadingLevels=64\n").MultithreadingLevels, 1);
    EXPECT_EQ(optionsFromText("[chess]\nMultithreadingLevels=0\n").MultithreadingLevels, 0);
}

TEST(Options, OutOfRangeChoicesAreKeptAsRead) {
    EXPECT_EQ(optionsFromText("[chess]\nMinimizeToTray=7\n").MinimizeToTray, 7);
    EXPECT_EQ(optionsFromText("[chess]\nLanguageId=5\n").LanguageId, 5);
    EXPECT_EQ(
        optionsFromText("[chess]\nWarnAboutSecondInstanceOfProgram=9\n").WarnAboutSecondInstanceOfProgram, 9);
}

TEST(Options, PrecalcPathIsTheTextWithoutQuotes) {
    EXPECT_EQ(optionsFromText("[chess]\nPrecalcPath = \"C:\\Chess Data\\\" \n").PrecalcPath,
              "C:\\Chess Data\\");
    EXPECT_EQ(optionsFromText("[chess]\nPrecalcPath=/home/a/Ta\xc5\x82\n").PrecalcPath, "/home/a/Ta\xc5\x82");
}

// ---- Load warnings.

TEST(Options, RecompressionAbovePackedDataWarnsAndIsLowered) {
    std::vector<LocalizedText> warnings;
    const Options o = optionsFromText(
        "[chess]\nAskForGlobalRegisterRecompression=2\nUseDataPackedForRandomAccess=1\n", &warnings);
    EXPECT_EQ(o.AskForGlobalRegisterRecompression, 1);
    EXPECT_EQ(o.UseDataPackedForRandomAccess, 1);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].english,
              L"Value of parameter AskForGlobalRegisterRecompression should not be greater "
              L"than UseDataPackedForRandomAccess.");
    EXPECT_EQ(warnings[0].polish,
              L"Wartość parametru AskForGlobalRegisterRecompression nie powinna być większa "
              L"niż UseDataPackedForRandomAccess.");
    EXPECT_EQ(warnings[0].ukrainian, L"Значення параметра AskForGlobalRegisterRecompression не повинно бути "
                                     L"більшим за UseDataPackedForRandomAccess.");
}

TEST(Options, RecompressionEqualToPackedDataIsQuiet) {
    std::vector<LocalizedText> warnings;
    const Options o = optionsFromText(
        "[chess]\nAskForGlobalRegisterRecompression=1\nUseDataPackedForRandomAccess=1\n", &warnings);
    EXPECT_EQ(o.AskForGlobalRegisterRecompression, 1);
    EXPECT_TRUE(warnings.empty());
}

TEST(Options, FullLogAtStartWarns) {
    std::vector<LocalizedText> warnings;
    optionsFromText("[chess]\nLogMoves=1\n", &warnings);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].english,
              L"Program has been opened with the option to write log of full analysis - this "
              L"option is not recommended (it makes solving last much longer and produces "
              L"large log files)");
    EXPECT_EQ(warnings[0].polish, L"Program został otwarty z opcją zapisu pełnego loga analizy - opcja jest "
                                  L"niezalecana (wydłuża czas analizy i produkowane są b.duże pliki)");
    EXPECT_FALSE(warnings[0].ukrainian.empty());
}

TEST_F(OptionsOnDisk, BothLoadWarningsComeInOrder) {
    write("[chess]\nLogMoves=1\nAskForGlobalRegisterRecompression=3\n");
    std::vector<LocalizedText> warnings;
    const Options o = LoadOptions(path_, warnings);
    EXPECT_EQ(o.AskForGlobalRegisterRecompression, 2);
    ASSERT_EQ(warnings.size(), 2u);
    EXPECT_EQ(warnings[0].english.substr(0, 19), L"Value of parameter ");
    EXPECT_EQ(warnings[1].english.substr(0, 23), L"Program has been opened");
}

// ---- Saving.

const char* const SAVED_DEFAULTS = "[chess]\n"
                                   "QuickMode=1\n"
                                   "SchedulerLevels=5\n"
                                   "CustomScheduler=1\n"
                                   "ObserverLevels=0\n"
                                   "LichessLevels=1\n"
                                   "WarnAboutSecondInstanceOfProgram=2\n"
                                   "PromptHeuristics=0\n"
                                   "MaxMemRatioForTempReg=20\n"
                                   "ClearRegisterOnStartSolving=1\n"
                                   "MaxMemRatioForPrecalculatedData=20\n"
                                   "LetAnalyzeTheSameMoveInTwoThreads=1\n"
                                   "CommentCompatibilityMode=0\n"
                                   "ShowMainVariant=1\n"
                                   "UseMainVariantAsSortIndications=0\n"
                                   "LogMoves=0\n"
                                   "RegisterInfoLog=0\n"
                                   "TryRelaxSpecialHeuristicsLog=0\n"
                                   "MinimizeToTray=2\n"
                                   "GlobalRegisterForceDiskAccess=1\n"
                                   "MultithreadingLevels=1\n"
                                   "EnableManualEngineControl=0\n";

TEST_F(OptionsOnDisk, SaveWritesExactlyTheDialogsKeys) {
    ASSERT_TRUE(SaveOptions(Options{}, path_));
    EXPECT_EQ(read(), SAVED_DEFAULTS);
}

TEST_F(OptionsOnDisk, SaveIgnoresTheKeysItDoesNotOwn) {
    Options o;
    o.LanguageId = 0;
    o.WarningOnLichessDataRepetition = true;
    o.CheckTempRegCoherency = false;
    o.AskForGlobalRegisterRecompression = 1;
    o.UseDataPackedForRandomAccess = 0;
    o.PrecalcPath = "D:\\x";
    o.AskIfSaveAfterDecompressAllToMem = true;
    o.LogToFileTmpRegLoad = false;
    o.CustomizedVersion = true;
    o.ScalingWarningDismissed = true;
    ASSERT_TRUE(SaveOptions(o, path_));
    EXPECT_EQ(read(), SAVED_DEFAULTS);
}

TEST_F(OptionsOnDisk, WithoutAFileTheSchedulerIsSixAndSavedAsFive) {
    std::vector<LocalizedText> warnings;
    const Options o = LoadOptions(path_, warnings);
    EXPECT_EQ(o.SchedulerLevels, 6);
    ASSERT_TRUE(SaveOptions(o, path_));
    EXPECT_EQ(ReadProfileFile(path_)->Get("chess", "SchedulerLevels"), "5");
}

TEST_F(OptionsOnDisk, SchedulerOffIsSavedAsMinusOneAndReadBackAsOff) {
    Options o;
    o.SchedulerLevels = 0;
    ASSERT_TRUE(SaveOptions(o, path_));
    EXPECT_EQ(ReadProfileFile(path_)->Get("chess", "SchedulerLevels"), "-1");
    std::vector<LocalizedText> warnings;
    EXPECT_EQ(LoadOptions(path_, warnings).SchedulerLevels, 0);
}

TEST_F(OptionsOnDisk, SavedMultithreadingLevelsComeBackAsOne) {
    Options o;
    o.MultithreadingLevels = 2;
    ASSERT_TRUE(SaveOptions(o, path_));
    EXPECT_EQ(ReadProfileFile(path_)->Get("chess", "MultithreadingLevels"), "2");
    std::vector<LocalizedText> warnings;
    EXPECT_EQ(LoadOptions(path_, warnings).MultithreadingLevels, 1);
}

TEST_F(OptionsOnDisk, SavedValuesReadBack) {
    Options o;
    o.QuickMode = false;
    o.SchedulerLevels = 9;
    o.CustomScheduler = false;
    o.ObserverLevels = 3;
    o.LichessLevels = -1;
    o.WarnAboutSecondInstanceOfProgram = 0;
    o.PromptHeuristics = true;
    o.MaxMemRatioForTempReg = 55;
    o.ClearRegisterOnStartSolving = false;
    o.MaxMemRatioForPrecalculatedData = 100;
    o.LetAnalyzeTheSameMoveInTwoThreads = false;
    o.CommentCompatibilityMode = true;
    o.ShowMainVariant = false;
    o.UseMainVariantAsSortIndications = true;
    o.RegisterInfoLog = true;
    o.TryRelaxSpecialHeuristicsLog = true;
    o.MinimizeToTray = 7;
    o.GlobalRegisterForceDiskAccess = false;
    o.EnableManualEngineControl = true;
    ASSERT_TRUE(SaveOptions(o, path_));
    std::vector<LocalizedText> warnings;
    EXPECT_EQ(LoadOptions(path_, warnings), o);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(OptionsOnDisk, SaveKeepsOtherKeysSectionsAndLines) {
    write("; written by hand\r\n[other]\r\nQuickMode=1\r\n[chess]\r\nLanguageId=0\r\nquickmode=0\r\n"
          "PrecalcPath=\"D:\\T\"\r\nMyOwnKey=abc\r\n\r\n[last]\r\nx=1\r\n");
    Options o;
    o.QuickMode = false;
    ASSERT_TRUE(SaveOptions(o, path_));
    const std::string saved = read();
    const std::string expected =
        "; written by hand\r\n[other]\r\nQuickMode=1\r\n[chess]\r\nLanguageId=0\r\nquickmode=0\r\n"
        "PrecalcPath=\"D:\\T\"\r\nMyOwnKey=abc\r\n"
        "SchedulerLevels=5\r\nCustomScheduler=1\r\nObserverLevels=0\r\nLichessLevels=1\r\n"
        "WarnAboutSecondInstanceOfProgram=2\r\nPromptHeuristics=0\r\nMaxMemRatioForTempReg=20\r\n"
        "ClearRegisterOnStartSolving=1\r\nMaxMemRatioForPrecalculatedData=20\r\n"
        "LetAnalyzeTheSameMoveInTwoThreads=1\r\nCommentCompatibilityMode=0\r\nShowMainVariant=1\r\n"
        "UseMainVariantAsSortIndications=0\r\nLogMoves=0\r\nRegisterInfoLog=0\r\n"
        "TryRelaxSpecialHeuristicsLog=0\r\nMinimizeToTray=2\r\nGlobalRegisterForceDiskAccess=1\r\n"
        "MultithreadingLevels=1\r\nEnableManualEngineControl=0\r\n"
        "\r\n[last]\r\nx=1\r\n";
    EXPECT_EQ(saved, expected);
    std::vector<LocalizedText> warnings;
    const Options back = LoadOptions(path_, warnings);
    EXPECT_EQ(back.LanguageId, 0);
    EXPECT_EQ(back.PrecalcPath, "D:\\T");
    EXPECT_FALSE(back.QuickMode);
}

TEST_F(OptionsOnDisk, SingleKeyWriteChangesOnlyThatKey) {
    write("[chess]\nQuickMode=0\nLanguageId=1\nZ=9\n");
    ASSERT_TRUE(WriteOptionKey(path_, "LanguageId", 2));
    EXPECT_EQ(read(), "[chess]\nQuickMode=0\nLanguageId=2\nZ=9\n");
    ASSERT_TRUE(WriteOptionKey(path_, "ScalingWarningDismissed", 1));
    EXPECT_EQ(read(), "[chess]\nQuickMode=0\nLanguageId=2\nZ=9\nScalingWarningDismissed=1\n");
}

TEST_F(OptionsOnDisk, LanguageIsSavedAtOnceWithoutSaveSettings) {
    ASSERT_TRUE(WriteOptionKey(path_, "LanguageId", 0));
    EXPECT_EQ(read(), "[chess]\nLanguageId=0\n");
    std::vector<LocalizedText> warnings;
    const Options o = LoadOptions(path_, warnings);
    EXPECT_EQ(o.LanguageId, 0);
    EXPECT_TRUE(o.QuickMode);
}

// ---- The checks of OK in the Options dialog.

OptionsDialogEntry entryFor(const Options& o, int threads = 4, int levels = 1) {
    OptionsDialogEntry e;
    e.choices = o;
    e.precalcRatio = std::to_string(o.MaxMemRatioForPrecalculatedData);
    e.tempRegRatio = std::to_string(o.MaxMemRatioForTempReg);
    e.schedulerLevels = std::to_string(o.SchedulerLevels);
    e.observerLevels = std::to_string(o.ObserverLevels);
    e.lichessLevels = std::to_string(o.LichessLevels);
    e.threads = std::to_string(threads);
    e.multithreadingLevels = std::to_string(levels);
    return e;
}

std::vector<std::wstring> englishOf(const OptionsDialogOutcome& outcome) {
    std::vector<std::wstring> texts;
    for (const DialogMessage& m : outcome.messages) texts.emplace_back(m.text.english);
    return texts;
}

const std::wstring PRECALC_IMPROPER = L"Improper value in field with memory ratio for precalculated data.";
const std::wstring TEMP_IMPROPER = L"Improper value in field with memory ratio for temporary data.";
const std::wstring SCHEDULER_INVALID = L"Invalid number of scheduler levels (min=0, max=9)";
const std::wstring LICHESS_INVALID =
    L"Invalid number of levels of analysis with solutions dowanloaded from ... (min=-1, max=255)";
const std::wstring LEVELS_ADJUSTED =
    L"Improper value in multithreading levels option: value truncated/adjusted";
const std::wstring TOO_MANY = L"Too many threads and/or multithreading levels.";
const std::wstring MANUAL_CAUTION =
    L"Note that manual engine control (reachable from context menu in progress info area) should be used "
    L"very "
    L"carefully, otherwise can result in skipping solutions or false positives.";
const std::wstring LOG_WITH_SCHEDULER =
    L"Full analysis logging is on. It is highly recommended to switch off "
    L"scheduler for readability/linearity of log records.";
const std::wstring CUSTOM_OFF = L"Note: Due to SchedulerLevels=0, Custom scheduler will be off";

OptionsDialogOutcome refusedWith(OptionsDialogEntry e, const std::wstring& text) {
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, e);
    EXPECT_FALSE(out.accepted);
    EXPECT_EQ(englishOf(out), std::vector<std::wstring>{text});
    if (!out.messages.empty()) {
        EXPECT_EQ(out.messages.back().title, MessageTitle::Error);
    }
    return out;
}

TEST(OptionsDialogCheck, UnchangedValuesAreAcceptedQuietly) {
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, entryFor(Options{}));
    EXPECT_TRUE(out.accepted);
    EXPECT_TRUE(out.messages.empty());
    EXPECT_EQ(out.options, Options{});
    EXPECT_EQ(out.threads, 4);
}

TEST(OptionsDialogCheck, FieldsAndChoicesAreTakenOver) {
    Options choices;
    choices.QuickMode = false;
    choices.MinimizeToTray = 0;
    choices.ShowMainVariant = false;
    OptionsDialogEntry e = entryFor(choices, 3, 2);
    e.precalcRatio = " 100 ";
    e.tempRegRatio = "0";
    e.schedulerLevels = "9";
    e.observerLevels = "12";
    e.lichessLevels = "-1";
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, e);
    ASSERT_TRUE(out.accepted);
    EXPECT_TRUE(out.messages.empty());
    EXPECT_FALSE(out.options.QuickMode);
    EXPECT_EQ(out.options.MinimizeToTray, 0);
    EXPECT_FALSE(out.options.ShowMainVariant);
    EXPECT_EQ(out.options.MaxMemRatioForPrecalculatedData, 100);
    EXPECT_EQ(out.options.MaxMemRatioForTempReg, 0);
    EXPECT_EQ(out.options.SchedulerLevels, 9);
    EXPECT_EQ(out.options.ObserverLevels, 12);
    EXPECT_EQ(out.options.LichessLevels, -1);
    EXPECT_EQ(out.options.MultithreadingLevels, 2);
    EXPECT_EQ(out.threads, 3);
}

TEST(OptionsDialogCheck, PrecalculatedRatioMustBeANumberUpTo100) {
    for (const char* bad : {"101", "", "abc", "-1", "5%", "1e2"}) {
        OptionsDialogEntry e = entryFor(Options{});
        e.precalcRatio = bad;
        refusedWith(e, PRECALC_IMPROPER);
    }
}

TEST(OptionsDialogCheck, TemporaryRatioMustBeANumberUpTo100) {
    for (const char* bad : {"101", "", "x1", "-5"}) {
        OptionsDialogEntry e = entryFor(Options{});
        e.tempRegRatio = bad;
        refusedWith(e, TEMP_IMPROPER);
    }
}

TEST(OptionsDialogCheck, SchedulerLevelsTenAreRefusedNineTaken) {
    for (const char* bad : {"10", "", "-1", "6x"}) {
        OptionsDialogEntry e = entryFor(Options{});
        e.schedulerLevels = bad;
        refusedWith(e, SCHEDULER_INVALID);
    }
    Options nine;
    nine.SchedulerLevels = 9;
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, entryFor(nine));
    ASSERT_TRUE(out.accepted);
    EXPECT_EQ(out.options.SchedulerLevels, 9);
}

TEST(OptionsDialogCheck, RemoteLevelsRunFromMinusOneTo255) {
    OptionsDialogEntry e = entryFor(Options{});
    for (const char* bad : {"-2", "256", "", "one"}) {
        e.lichessLevels = bad;
        refusedWith(e, LICHESS_INVALID);
    }
    e.lichessLevels = "255";
    EXPECT_EQ(CheckOptionsDialog(Options{}, e).options.LichessLevels, 255);
}

TEST(OptionsDialogCheck, ChecksRunInTheirOrder) {
    // Every field wrong at first; each one put right lets the next check speak.
    OptionsDialogEntry e = entryFor(Options{}, 64, 64);
    e.precalcRatio = "200";
    e.tempRegRatio = "200";
    e.schedulerLevels = "20";
    e.lichessLevels = "300";
    const std::pair<std::string OptionsDialogEntry::*, std::wstring> steps[] = {
        {&OptionsDialogEntry::precalcRatio, PRECALC_IMPROPER},
        {&OptionsDialogEntry::tempRegRatio, TEMP_IMPROPER},
        {&OptionsDialogEntry::schedulerLevels, SCHEDULER_INVALID},
        {&OptionsDialogEntry::lichessLevels, LICHESS_INVALID},
        {&OptionsDialogEntry::threads, TOO_MANY},
    };
    for (const auto& [field, text] : steps) {
        refusedWith(e, text);
        e.*field = std::string("1");
    }
    EXPECT_TRUE(CheckOptionsDialog(Options{}, e).accepted);
}

TEST(OptionsDialogCheck, ThreadsAreClampedSilently) {
    OptionsDialogEntry e = entryFor(Options{}, 100, 1);
    OptionsDialogOutcome out = CheckOptionsDialog(Options{}, e);
    EXPECT_TRUE(out.messages.empty());
    EXPECT_EQ(out.threads, 64);
    e.threads = "0";
    out = CheckOptionsDialog(Options{}, e);
    EXPECT_TRUE(out.messages.empty());
    EXPECT_EQ(out.threads, 1);
    e.threads = "many";
    EXPECT_EQ(CheckOptionsDialog(Options{}, e).threads, 1);
}

TEST(OptionsDialogCheck, OneThreadMeansOneLevel) {
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, entryFor(Options{}, 1, 50));
    ASSERT_TRUE(out.accepted);
    EXPECT_TRUE(out.messages.empty());
    EXPECT_EQ(out.options.MultithreadingLevels, 1);
}

TEST(OptionsDialogCheck, LevelsOutOfRangeAreAdjustedWithANote) {
    OptionsDialogEntry e = entryFor(Options{}, 2, 1);
    e.multithreadingLevels = "-3";
    OptionsDialogOutcome out = CheckOptionsDialog(Options{}, e);
    ASSERT_TRUE(out.accepted);
    EXPECT_EQ(englishOf(out), std::vector<std::wstring>{LEVELS_ADJUSTED});
    EXPECT_EQ(out.messages[0].title, MessageTitle::Warning);
    EXPECT_EQ(out.options.MultithreadingLevels, 0);
    e.multithreadingLevels = "x";
    out = CheckOptionsDialog(Options{}, e);
    EXPECT_EQ(englishOf(out), std::vector<std::wstring>{LEVELS_ADJUSTED});
    EXPECT_EQ(out.options.MultithreadingLevels, 0);
}

TEST(OptionsDialogCheck, AdjustedLevelsCanStillBeTooMany) {
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, entryFor(Options{}, 2, 65));
    EXPECT_FALSE(out.accepted);
    EXPECT_EQ(englishOf(out), (std::vector<std::wstring>{LEVELS_ADJUSTED, TOO_MANY}));
}

TEST(OptionsDialogCheck, ThreadTreeMustStayBelow32767) {
    EXPECT_TRUE(CheckOptionsDialog(Options{}, entryFor(Options{}, 2, 14)).accepted); // 16384
    refusedWith(entryFor(Options{}, 2, 15), TOO_MANY);                               // 32768
    EXPECT_TRUE(CheckOptionsDialog(Options{}, entryFor(Options{}, 31, 3)).accepted); // 29791
    refusedWith(entryFor(Options{}, 32, 3), TOO_MANY);                               // 32768
    EXPECT_TRUE(CheckOptionsDialog(Options{}, entryFor(Options{}, 64, 2)).accepted); // 4096
    EXPECT_TRUE(CheckOptionsDialog(Options{}, entryFor(Options{}, 64, 0)).accepted);
}

TEST(OptionsDialogCheck, ObserverLevelsHaveNoCheck) {
    OptionsDialogEntry e = entryFor(Options{});
    e.observerLevels = "70000";
    EXPECT_EQ(CheckOptionsDialog(Options{}, e).options.ObserverLevels, 65535);
    e.observerLevels = "abc";
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, e);
    EXPECT_TRUE(out.accepted);
    EXPECT_TRUE(out.messages.empty());
    EXPECT_EQ(out.options.ObserverLevels, 0);
}

TEST(OptionsDialogCheck, EnablingManualEngineControlWarns) {
    Options choices;
    choices.EnableManualEngineControl = true;
    OptionsDialogOutcome out = CheckOptionsDialog(Options{}, entryFor(choices));
    ASSERT_TRUE(out.accepted);
    EXPECT_EQ(englishOf(out), std::vector<std::wstring>{MANUAL_CAUTION});
    EXPECT_EQ(out.messages[0].title, MessageTitle::Warning);
    EXPECT_TRUE(out.options.EnableManualEngineControl);
    out = CheckOptionsDialog(choices, entryFor(choices)); // on already
    EXPECT_TRUE(out.messages.empty());
}

TEST(OptionsDialogCheck, FullLogWithSchedulerGetsANote) {
    Options choices;
    choices.LogMoves = true;
    choices.EnableManualEngineControl = true;
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, entryFor(choices));
    EXPECT_EQ(englishOf(out), (std::vector<std::wstring>{MANUAL_CAUTION, LOG_WITH_SCHEDULER}));
    EXPECT_TRUE(out.options.LogMoves);
    EXPECT_TRUE(out.options.CustomScheduler);
}

TEST(OptionsDialogCheck, SchedulerOffSwitchesTheCustomSchedulerOff) {
    Options choices;
    choices.LogMoves = true;
    OptionsDialogEntry e = entryFor(choices);
    e.schedulerLevels = "0";
    const OptionsDialogOutcome out = CheckOptionsDialog(Options{}, e);
    ASSERT_TRUE(out.accepted);
    EXPECT_EQ(englishOf(out), std::vector<std::wstring>{CUSTOM_OFF});
    EXPECT_EQ(out.messages[0].title, MessageTitle::Information);
    EXPECT_FALSE(out.options.CustomScheduler);
    EXPECT_EQ(out.options.SchedulerLevels, 0);
    e.choices.CustomScheduler = false;
    EXPECT_TRUE(CheckOptionsDialog(Options{}, e).messages.empty());
}

TEST(OptionsDialogCheck, EveryMessageHasItsThreeForms) {
    Options choices;
    choices.EnableManualEngineControl = true;
    choices.LogMoves = true;
    std::vector<OptionsDialogEntry> entries(7, entryFor(choices, 2, 1)); // the last one is accepted
    entries[0].precalcRatio = "x";
    entries[1].tempRegRatio = "x";
    entries[2].schedulerLevels = "x";
    entries[3].lichessLevels = "x";
    entries[4].multithreadingLevels = "99";
    entries[5].schedulerLevels = "0";
    std::set<std::wstring> seen;
    for (const OptionsDialogEntry& e : entries) {
        for (const DialogMessage& m : CheckOptionsDialog(Options{}, e).messages) {
            EXPECT_FALSE(m.text.polish.empty());
            EXPECT_FALSE(m.text.ukrainian.empty());
            EXPECT_NE(m.text.polish, m.text.english);
            EXPECT_NE(m.text.ukrainian, m.text.english);
            EXPECT_NE(m.text.polish, m.text.ukrainian);
            seen.emplace(m.text.english);
        }
    }
    EXPECT_EQ(seen, (std::set<std::wstring>{PRECALC_IMPROPER, TEMP_IMPROPER, SCHEDULER_INVALID,
                                            LICHESS_INVALID, LEVELS_ADJUSTED, TOO_MANY, MANUAL_CAUTION,
                                            LOG_WITH_SCHEDULER, CUSTOM_OFF}));
}

TEST(OptionsDialogCheck, PolishFormsOfTheRangeMessagesEndWithTheMaximum) {
    OptionsDialogEntry e = entryFor(Options{});
    e.schedulerLevels = "10";
    EXPECT_EQ(CheckOptionsDialog(Options{}, e).messages.at(0).text.polish,
              L"Niepoprawna liczba poziomów planisty (min=0, max=9)");
    e = entryFor(Options{});
    e.lichessLevels = "256";
    EXPECT_EQ(CheckOptionsDialog(Options{}, e).messages.at(0).text.ukrainian,
              L"Неправильна кількість рівнів аналізу з розв’язками, завантаженими з ... (min=-1, max=255)");
}

// ---- Labels, tooltips and memory sizes of the dialog.

TEST(OptionsDialogTexts, EveryControlHasThreeLabelsAndATooltip) {
    for (int i = 0; i < static_cast<int>(OptionsControl::Count); ++i) {
        const auto control = static_cast<OptionsControl>(i);
        const ControlTexts& t = OptionsControlTexts(control);
        EXPECT_FALSE(t.label.polish.empty()) << i;
        EXPECT_FALSE(t.label.english.empty()) << i;
        EXPECT_FALSE(t.label.ukrainian.empty()) << i;
        const bool plain = control == OptionsControl::Title || control == OptionsControl::Ok ||
                           control == OptionsControl::Cancel;
        EXPECT_EQ(t.tooltip.english.empty(), plain) << i;
        EXPECT_EQ(t.tooltip.polish.empty(), plain) << i;
        EXPECT_EQ(t.tooltip.ukrainian.empty(), plain) << i;
    }
}

TEST(OptionsDialogTexts, EnglishLabelsAreTheProgramsOwn) {
    EXPECT_EQ(OptionsControlTexts(OptionsControl::ThreadsAndLevels).label.english,
              L"Num.of threads ^ num.of multithreading levels");
    EXPECT_EQ(OptionsControlTexts(OptionsControl::SchedulerLevels).label.english,
              L"Num.of scheduler levels (default=6, off=0)");
    EXPECT_EQ(OptionsControlTexts(OptionsControl::LichessLevels).label.english,
              L"Num.of move levels with solutions taken from ... (default=1, off=0, even in GUI off=-1)");
    EXPECT_EQ(OptionsControlTexts(OptionsControl::ThreadsNotSaved).label.english,
              L"Note that thread settings will not be saved");
    EXPECT_EQ(OptionsControlTexts(OptionsControl::SaveSettings).label.english, L"&Save settings");
}

TEST(MemoryLimit, LimitsFollowTheirFormulas) {
    const std::uint64_t sixteenGb = 16ull << 30;
    EXPECT_EQ(TempRegLimitMb(sixteenGb, 20), 3276u);
    EXPECT_EQ(TempRegLimitMb(sixteenGb + (1u << 19), 100), 16384u); // half a megabyte is dropped
    EXPECT_EQ(PrecalculatedDataLimitBytes(sixteenGb, 20), 3435973836u);
    EXPECT_EQ(PrecalculatedDataLimitBytes(999, 50), 499u);
    EXPECT_EQ(PrecalculatedDataLimitBytes(sixteenGb, 0), 0u);
}

TEST(MemoryLimit, SizesShowInMegabytesOrGigabytes) {
    EXPECT_EQ(MemorySizeText(0), L"0 MB");
    EXPECT_EQ(MemorySizeText(1023ull << 20), L"1023 MB");
    EXPECT_EQ(MemorySizeText(1ull << 30), L"1.0 GB");
    EXPECT_EQ(MemorySizeText(3276ull << 20), L"3.2 GB");
    EXPECT_EQ(MemorySizeText((16ull << 30) - 1), L"16.0 GB");
}

} // namespace
} // namespace zorvane

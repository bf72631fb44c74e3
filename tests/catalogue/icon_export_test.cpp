#include "catalogue/icon_export.h"

#include <windows.h>

#include <shellapi.h>

#include <gmock/gmock.h>

#include <cstring>
#include <memory>

#include "catalogue/gdiplus_calls.h"
#include "catalogue/png_file.h"
#include "catalogue/sample_program.h"
#include "simulated_calls.h"
#include "support/import_watch.h"
#include "support/temp_folder.h"

using Standin::ImportPatch;
using TestSupport::FileExists;
using TestSupport::GdiplusCalls;
using TestSupport::Narrow;
using TestSupport::TempFolder;
using Zq::Gantry::Server::Services::Wattleaf::ExportAppIcon;

namespace {

constexpr char kDevice[] = "\\Device\\HarddiskVolume3";

/// Fakes the extraction of an icon: records the arguments and returns a new icon or null.
class FakeExtraction {
 public:
  /// Adds "extract" and "destroy icon" to `record` unless that is null.
  explicit FakeExtraction(bool hasIcon, TestSupport::CallRecord* record = nullptr)
      : hasIcon_(hasIcon), record_(record) {
    current_ = this;
  }

  int calls = 0;
  int destroyed = 0;
  std::string buffer;
  HINSTANCE instance = nullptr;
  WORD index = 0xFFFF;
  WORD id = 0xFFFF;

 private:
  static HICON WINAPI Extract(HINSTANCE instance, char* path, WORD* index, WORD* id) {
    ++current_->calls;
    current_->Record("extract");
    current_->buffer.assign(path, 260);
    current_->instance = instance;
    current_->index = *index;
    current_->id = *id;
    // The system may overwrite the path with that of another program.
    std::memset(path, 'w', 259);
    *index = 7;
    return current_->hasIcon_ ? TestSupport::SampleIcon().release() : nullptr;
  }
  static BOOL WINAPI Destroy(HICON icon) {
    ++current_->destroyed;
    current_->Record("destroy icon");
    return current_->destroy_.Original<decltype(Destroy)>()(icon);
  }

  void Record(const char* call) {
    if (record_ != nullptr) record_->Add(call);
  }

  static inline FakeExtraction* current_ = nullptr;
  const bool hasIcon_;
  TestSupport::CallRecord* const record_;
  const ImportPatch extract_{"ExtractAssociatedIconExA", &Extract};
  const ImportPatch destroy_{"DestroyIcon", &Destroy};
};

/// A text in a buffer of 260 bytes that is filled up with zeros.
std::string Buffer(const std::string& text) {
  std::string buffer = text;
  buffer.resize(260, '\0');
  return buffer;
}

}  // namespace

TEST(ExportAppIcon, WritesTheProgramsIconUnderTheApplicationsName) {
  // The path of a copy of the sample, below the simulated device of drive C:.
  const TempFolder folder;
  ASSERT_EQ(folder.Path().substr(0, 2), L"C:");
  ASSERT_TRUE(CopyFileA(TestSupport::SampleProgram("one.exe").c_str(),
                        Narrow(folder.File(L"one.exe")).c_str(), FALSE));
  const Standin::SimulatedCalls fake(GetModuleHandleW(nullptr), true);

  const std::string path = kDevice + Narrow(folder.File(L"one.exe")).substr(2);
  EXPECT_EQ(ExportAppIcon(path, Narrow(folder.Path()), "Brook Browser", kDevice),
            Narrow(folder.File(L"Brook Browser.png")));

  const auto picture = TestSupport::ReadPng(folder.File(L"Brook Browser.png"));
  EXPECT_EQ(picture.width, 32u);
  EXPECT_EQ(picture.height, 32u);
  EXPECT_EQ(picture.middle, 0xFFE62E3Du);
}

TEST(ExportAppIcon, FailsForAMissingProgram) {
  const TempFolder folder;
  const Standin::SimulatedCalls fake(GetModuleHandleW(nullptr), true);
  EXPECT_EQ(
      ExportAppIcon(kDevice + std::string("\\nowhere.exe"), Narrow(folder.Path()), "x", kDevice),
      "");
  EXPECT_FALSE(FileExists(folder.File(L"x.png")));
}

TEST(ExportAppIcon, FailsForAnotherDrive) {
  const TempFolder folder;
  const Standin::SimulatedCalls fake(GetModuleHandleW(nullptr), true);
  EXPECT_EQ(ExportAppIcon("\\Device\\HarddiskVolume5\\a.exe", Narrow(folder.Path()), "x", kDevice),
            "");
  EXPECT_FALSE(FileExists(folder.File(L"x.png")));
}

TEST(ExportAppIcon, ExtractsTheFirstIconOfThePathOnTheDrive) {
  FakeExtraction extraction(false);
  static_cast<void>(
      ExportAppIcon("\\Device\\HarddiskVolume3\\Tools\\a.exe", "C:\\Icons", "A", kDevice));
  EXPECT_EQ(extraction.calls, 1);
  EXPECT_EQ(extraction.buffer, Buffer("C:\\Tools\\a.exe"));
  EXPECT_EQ(extraction.instance, nullptr);
  EXPECT_EQ(extraction.index, 0);
  EXPECT_EQ(extraction.id, 0);
}

TEST(ExportAppIcon, KeepsTheDevicePathOfAnotherDrive) {
  FakeExtraction extraction(false);
  static_cast<void>(ExportAppIcon("\\Device\\HarddiskVolume5\\a.exe", "C:\\Icons", "A", kDevice));
  EXPECT_EQ(extraction.buffer, Buffer("\\Device\\HarddiskVolume5\\a.exe"));
}

TEST(ExportAppIcon, CutsTheLengthOfThePrefixFromTheStart) {
  FakeExtraction extraction(false);
  static_cast<void>(
      ExportAppIcon("\\Device\\Mup\\x\\Device\\HarddiskVolume3\\a.exe", "C:\\Icons", "A", kDevice));
  EXPECT_EQ(extraction.buffer, Buffer("C:rddiskVolume3\\a.exe"));
}

TEST(ExportAppIcon, ExtractsFromAnEmptyPathWithoutADevicePrefix) {
  FakeExtraction extraction(false);
  EXPECT_EQ(ExportAppIcon("C:\\Tools\\a.exe", "C:\\Icons", "A", ""), "");
  EXPECT_EQ(extraction.calls, 1);
  EXPECT_EQ(extraction.buffer, Buffer(""));
}

TEST(ExportAppIcon, ExtractsFromAnEmptyPathAbove259Bytes) {
  FakeExtraction extraction(false);
  const std::string fits(259, 'p');
  static_cast<void>(ExportAppIcon(fits, "C:\\Icons", "A", kDevice));
  EXPECT_EQ(extraction.buffer, Buffer(fits));
  for (const std::size_t bytes : {260, 261, 1'000'000}) {
    static_cast<void>(ExportAppIcon(std::string(bytes, 'p'), "C:\\Icons", "A", kDevice));
    EXPECT_EQ(extraction.buffer, Buffer("")) << bytes;
  }
  EXPECT_EQ(extraction.calls, 4);
}

TEST(ExportAppIcon, EndsThePathAtItsFirstZero) {
  FakeExtraction extraction(false);
  static_cast<void>(ExportAppIcon(std::string("C:\\a.exe\0", 9) + std::string(300, 'p'),
                                  "C:\\Icons", "A", kDevice));
  EXPECT_EQ(extraction.buffer, Buffer("C:\\a.exe"));
}

TEST(ExportAppIcon, TouchesNoFileWithoutAnIcon) {
  const FakeExtraction extraction(false);
  const TestSupport::ImportWatch watch;
  EXPECT_EQ(ExportAppIcon("x", "C:\\Icons", "A", kDevice), "");
  EXPECT_THAT(watch.Calls(), testing::ElementsAre("ExtractAssociatedIconExA"));
}

TEST(ExportAppIcon, OverwritesAnExistingFileAndDestroysTheIcon) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"A.png"), "an older icon");
  FakeExtraction extraction(true);
  static_cast<void>(ExportAppIcon("x", Narrow(folder.Path()), "A", kDevice));
  EXPECT_EQ(TestSupport::ReadPng(folder.File(L"A.png")).width, 32u);
  EXPECT_EQ(extraction.destroyed, 1);
}

TEST(ExportAppIcon, DestroysTheIconAfterItsImageIsDisposedAndGdiplusStopped) {
  const TempFolder folder;
  GdiplusCalls gdiplus;
  const FakeExtraction extraction(true, &gdiplus.record);
  static_cast<void>(ExportAppIcon("x", Narrow(folder.Path()), "A", kDevice));
  const std::vector<std::string> calls = {"extract", "start", "bitmap",      "save",
                                          "dispose", "stop",  "destroy icon"};
  EXPECT_EQ(gdiplus.record.Lines(), calls);
}

TEST(ExportAppIcon, ReturnsThePathEvenWhenTheSaveFails) {
  const TempFolder folder;
  FakeExtraction extraction(true);
  const std::string missing = Narrow(folder.File(L"missing"));
  EXPECT_EQ(ExportAppIcon("x", missing, "A", kDevice), missing + "\\A.png");
  EXPECT_EQ(ExportAppIcon("x", Narrow(folder.Path()), "what?", kDevice),
            Narrow(folder.Path()) + "\\what?.png");
  EXPECT_EQ(extraction.destroyed, 2);
}

TEST(ExportAppIcon, WidensThePathByteByByte) {
  const FakeExtraction extraction(true);
  GdiplusCalls gdiplus;
  gdiplus.saveStatus = Gdiplus::Ok;
  EXPECT_EQ(ExportAppIcon("x", "C:\\Icons", "Gr\xC3\xBCn", kDevice), "C:\\Icons\\Gr\xC3\xBCn.png");
  EXPECT_EQ(gdiplus.savePath, L"C:\\Icons\\Gr\xFFC3\xFFBCn.png");
}

TEST(ExportAppIcon, AcceptsAnEmptyDirectoryAndName) {
  const FakeExtraction extraction(true);
  GdiplusCalls gdiplus;
  gdiplus.saveStatus = Gdiplus::Ok;
  EXPECT_EQ(ExportAppIcon("x", "", "", kDevice), "\\.png");
  EXPECT_EQ(gdiplus.savePath, L"\\.png");
}

// A user may have chosen the name, so it must not lead to a file outside the directory.
TEST(ExportAppIcon, WritesNoFileForANameThatLeadsOutOfTheDirectory) {
  FakeExtraction extraction(true);
  const GdiplusCalls gdiplus;
  for (const std::string name : {"..\\x", "../x", "x:stream", "C:"}) {
    EXPECT_EQ(ExportAppIcon("x", "C:\\Icons", name, kDevice), "C:\\Icons\\" + name + ".png");
  }
  const std::string zero("x\0y", 3);
  EXPECT_EQ(ExportAppIcon("x", "C:\\Icons", zero, kDevice), "C:\\Icons\\" + zero + ".png");
  EXPECT_EQ(ExportAppIcon("x", zero, "A", kDevice), zero + "\\A.png");
  EXPECT_EQ(gdiplus.started, 0);
  EXPECT_EQ(gdiplus.saves, 0);
  EXPECT_EQ(extraction.calls, 6) << "the icon is not extracted";
  EXPECT_EQ(extraction.destroyed, 6);
}

// Only a POSIX system lets a test create symbolic links and write to a device that is always full.

#include <gtest/gtest.h>

#include <memory>

#include "base/json_document.h"
#include "base/scratch_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ScratchFolder;

TEST(SaveJsonDocument, DoesNotWriteThroughALink) {
  const ScratchFolder folder;
  TestSupport::WriteBytes(folder.File("target.json"), "untouched");
  std::filesystem::create_symlink(folder.File("target.json"), folder.File("link.json"));
  std::filesystem::create_symlink(folder.File("nowhere.json"), folder.File("broken.json"));
  GenericDocument document;
  document.SetArray();
  EXPECT_FALSE(SaveJsonDocument(folder.File("link.json").wstring(), document));
  EXPECT_FALSE(SaveJsonDocument(folder.File("broken.json").wstring(), document));
  EXPECT_EQ(TestSupport::ReadBytes(folder.File("target.json")), "untouched");
  EXPECT_FALSE(std::filesystem::exists(folder.File("nowhere.json")));
}

TEST(SaveJsonDocument, ReturnsTrueWhenTheWriteFails) {
  GenericDocument document;
  document.SetArray();
  EXPECT_TRUE(SaveJsonDocument(L"/dev/full", document));
}

#include "collection/collector_fixture.h"

namespace TestSupport {

CollectorFixture::CollectorFixture() {
  current = this;
  library.script.record = &record;
  helper = std::make_unique<OpenHelper>();
  helper->PlatformSupportState = 1;
  helper->collectionPath = dataFolder.c_str();
}

CollectorFixture::~CollectorFixture() { helper.reset(); }

bool CollectorFixture::StartTrusted() {
  const ProtectedFolder folder(L"signed.dll");
  helper->hostDirectory = folder.Path();
  return helper->StartCollection();
}

std::vector<LogRecord> CollectorFixture::CollectorRecords() const {
  std::vector<LogRecord> chosen;
  for (const LogRecord& line : log.Records()) {
    if (line.text.find(L"DataCollector") != std::wstring::npos ||
        line.text.find(L"StartCollection()") != std::wstring::npos) {
      chosen.push_back(line);
    }
  }
  return chosen;
}

void CollectorFixture::ExpectUnloaded() const {
  EXPECT_EQ(helper->collector.get(), nullptr);
  EXPECT_FALSE(helper->collectorModule);
  EXPECT_EQ(library.freed, 1);
}

BOOL WINAPI CollectorFixture::CreateFolder(const wchar_t* path, SECURITY_ATTRIBUTES* security) {
  if (current->dataFolder == path) current->record.Add("create data folder");
  return current->createFolder_.Original<BOOL WINAPI(const wchar_t*, SECURITY_ATTRIBUTES*)>()(
      path, security);
}

}  // namespace TestSupport

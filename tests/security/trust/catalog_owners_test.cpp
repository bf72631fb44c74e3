#include "platform/win32/catalog_owners.h"

#include <gtest/gtest.h>

#include <utility>

#include "security/trust/fake_catalogs.h"

using namespace TestSupport;
using namespace Zq::Gantry::Platform;

namespace {

UniqueCatalogAdmin NewAdmin() {
  UniqueCatalogAdmin admin;
  CryptCATAdminAcquireContext2(admin.out(), nullptr, L"SHA256", nullptr, 0);
  return admin;
}

UniqueCatalog NewCatalog(const UniqueCatalogAdmin& admin) {
  BYTE hash[32] = {};
  return UniqueCatalog(
      {admin.get(), CryptCATAdminEnumCatalogFromHash(admin.get(), hash, sizeof(hash), 0, nullptr)});
}

class CatalogOwners : public testing::Test {
 protected:
  CatalogOwners() { catalogs_.catalogs = {L"C:\\catalogs\\first.cat"}; }
  FakeCatalogs catalogs_;
};

}  // namespace

TEST_F(CatalogOwners, AMovedContextIsReleasedOnce) {
  {
    UniqueCatalogAdmin first = NewAdmin();
    EXPECT_TRUE(static_cast<bool>(first));
    const UniqueCatalogAdmin second = std::move(first);
    EXPECT_EQ(catalogs_.Count("release context"), 0);
  }
  EXPECT_EQ(catalogs_.Count("release context"), 1);
}

TEST_F(CatalogOwners, ResetReleasesAContextAndReleaseGivesItUp) {
  UniqueCatalogAdmin admin = NewAdmin();
  admin.reset();
  EXPECT_EQ(catalogs_.Count("release context"), 1);
  admin = NewAdmin();
  const HCATADMIN released = admin.release();
  EXPECT_NE(released, nullptr);
  admin.reset();
  EXPECT_EQ(catalogs_.Count("release context"), 1);
}

TEST_F(CatalogOwners, AMovedCatalogIsReleasedOnceAndBeforeItsContext) {
  {
    const UniqueCatalogAdmin admin = NewAdmin();
    UniqueCatalog first = NewCatalog(admin);
    EXPECT_TRUE(static_cast<bool>(first));
    const UniqueCatalog second = std::move(first);
    EXPECT_FALSE(static_cast<bool>(first));
  }
  EXPECT_EQ(catalogs_.calls,
            (std::vector<std::string>{"acquire", "enum", "release catalog", "release context"}));
}

TEST_F(CatalogOwners, AnEmptyOwnerReleasesNothing) {
  catalogs_.catalogs.clear();
  const UniqueCatalogAdmin admin = NewAdmin();
  {
    const UniqueCatalog catalog = NewCatalog(admin);
    EXPECT_FALSE(static_cast<bool>(catalog));
  }
  EXPECT_EQ(catalogs_.Count("release catalog"), 0);
}

TEST_F(CatalogOwners, ReleasingKeepsTheLastError) {
  UniqueCatalogAdmin admin = NewAdmin();
  UniqueCatalog catalog = NewCatalog(admin);
  SetLastError(77);
  catalog.reset();
  admin.reset();
  EXPECT_EQ(GetLastError(), 77u);
}

#pragma once

#include <string>
#include <vector>

#include "live_object.h"
#include "platform/win32/com_owners.h"
#include "unused_operations.h"

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// Hands out its objects once, one at a time.
class Enumerator final : public LiveObject<UnusedEnumerator> {
 public:
  using Object = Zq::Gantry::Platform::UniqueInterface<IWbemClassObject>;

  explicit Enumerator(std::string className) : className_(std::move(className)) {}
  /// Takes the reference over.
  void Add(IWbemClassObject* object) { objects_.emplace_back(object); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP Next(LONG timeout, ULONG count, IWbemClassObject** objects,
                    ULONG* returned) override;

 private:
  ~Enumerator() override;

  std::string className_;
  std::vector<Object> objects_;
  std::size_t next_ = 0;
};

}  // namespace Standin::Firmware

#pragma once

#include <map>
#include <string>

#include "live_object.h"
#include "script.h"
#include "unused_operations.h"

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// A class or an instance: a bag of properties that can be put and got. Classes with a method table
/// answer GetMethod.
class ClassObject final : public LiveObject<UnusedClassObject> {
 public:
  explicit ClassObject(std::wstring className) : className_(std::move(className)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  STDMETHODIMP Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) override;
  STDMETHODIMP SpawnInstance(LONG flags, IWbemClassObject** instance) override;
  STDMETHODIMP GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** input,
                         IWbemClassObject** output) override;

  /// A value that is made anew for each Get.
  void SetProperty(const std::wstring& name, VariantMaker make) {
    properties_[name] = std::move(make);
  }
  /// A copy of this value, from now on.
  void Keep(const std::wstring& name, const VARIANT& value);
  /// The script can refuse the query for IWbemClassObject under this name.
  void NameQuery(const std::string& call) { queryCall_ = call; }
  /// The value of a property, for the stand-in's own use: no trace. Empty if there is none. The
  /// caller clears it.
  VARIANT Find(const std::wstring& name) const;

 private:
  ~ClassObject() override;

  std::wstring className_;
  std::string queryCall_;
  std::map<std::wstring, VariantMaker> properties_;
};

}  // namespace Standin::Firmware

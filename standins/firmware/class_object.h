#pragma once

#include <map>
#include <string>

#include "firmware_script.h"
#include "live_object.h"
#include "platform/win32/com_owners.h"
#include "unused_wmi_methods.h"

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// A class or an instance of WMI: its name and its properties. The class zqqBIntM has methods, so
/// it answers GetMethod.
class ClassObject final : public LiveObject<UnusedClassObjectMethods> {
 public:
  explicit ClassObject(std::wstring className) : className_(std::move(className)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type, LONG* flavor) override;
  STDMETHODIMP Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) override;
  STDMETHODIMP SpawnInstance(LONG flags, IWbemClassObject** instance) override;
  STDMETHODIMP GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** input,
                         IWbemClassObject** output) override;

  /// Each Get calls `make` for a fresh value.
  void SetProperty(const std::wstring& name, VariantMaker make) {
    properties_[name] = std::move(make);
  }
  /// Each Get returns a copy of `value`, which is copied here.
  void SetProperty(const std::wstring& name, const VARIANT& value);
  /// The name under which the script can refuse QueryInterface for IWbemClassObject.
  void NameQuery(const std::string& call) { queryCall_ = call; }
  /// Reads a property for the stand-in's own use, without a line in the trace. `value` is empty
  /// before, and stays so if there is no such property.
  void Read(const std::wstring& name, Zq::Gantry::Platform::ScopedVariant& value) const;

 private:
  ~ClassObject() override;

  std::wstring className_;
  std::string queryCall_;
  std::map<std::wstring, VariantMaker> properties_;
};

}  // namespace Standin::Firmware

#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// Part of the stand-in for the firmware's WMI objects: which calls deviate, and a trace of the
// calls that were made.
//
// A call's name is its method and, in parentheses, the class, property or namespace it is about:
//   CreateInstance, ConnectServer(ROOT\CIMV2), ConnectServer(\\.\root\wmi), SetBlanket, ExecQuery,
//   Next(Win32_ComputerSystem), Get(OEMStringArray), GetObject(zqqBIntM), GetMethod,
//   GetObject(zqqBDataIn), SpawnInstance(zqqBDataIn), Put(Sign), Put(Command), Put(CommandType),
//   Put(Size), Put(zqqBData), SpawnInstance(__PARAMETERS), Put(InData), CreateInstanceEnum,
//   Next(ZqqBIntM), Get(__PATH), ExecMethod, Get(OutData), QueryInterface(OutData),
//   Get(rwReturnCode), Get(Data)
namespace Standin::Firmware {

using VariantMaker = std::function<void(VARIANT* value)>;

/// Every occurrence of a call.
inline constexpr int kAlways = 0;

class Script {
 public:
  /// Clears everything but the listener and applies `words`; returns the unknown ones.
  [[nodiscard]] std::vector<std::string> Reset(const std::string& words);

  /// The call's n-th occurrence, or each one, returns `result` at once and hands no object out.
  /// `result` may be a failure or a success.
  void Fail(const std::string& call, HRESULT result, int occurrence = kAlways);
  /// The n-th Get of this name, or each one, returns this value; `make` gets an initialised
  /// variant.
  void Answer(const std::string& call, VariantMaker make, int occurrence = kAlways);
  /// Passes to `listener` each line of the trace and, as "end of NAME", each object whose last
  /// reference was released; on the caller's thread, also after a Reset. An empty function removes
  /// the listener.
  void Listen(std::function<void(const std::string& call)> listener);
  /// Runs `action` inside each call of this name, on the caller's thread, before the call returns.
  void During(const std::string& call, std::function<void()> action);

  [[nodiscard]] bool Has(const std::string& word) const;
  /// All calls in order, as "name" or "name detail".
  [[nodiscard]] std::vector<std::string> Trace() const;
  /// The number of calls of this name.
  [[nodiscard]] int Count(const std::string& call) const;

  /// Called by the objects: records a call. Returns the scripted result of a call that ends here.
  [[nodiscard]] std::optional<HRESULT> Enter(const std::string& call,
                                             const std::string& detail = {});
  /// Called by the objects: reports to the listener that an object ended.
  void End(const std::string& name);
  /// Called by the objects: the scripted value of the call that was just entered; null if there is
  /// none.
  [[nodiscard]] VariantMaker FindAnswer(const std::string& call) const;

 private:
  template <typename Value>
  struct Scripted {
    int occurrence;
    Value value;
  };

  mutable std::mutex lock_;
  std::vector<std::string> words_;
  std::multimap<std::string, Scripted<HRESULT>> failures_;
  std::multimap<std::string, Scripted<VariantMaker>> answers_;
  std::map<std::string, std::function<void()>> actions_;
  std::map<std::string, int> counts_;
  std::vector<std::string> trace_;
  std::function<void(const std::string&)> listener_;
};

/// The one script of the process.
[[nodiscard]] Script& TheScript();

/// `text` for names and details of the trace; characters outside ASCII become "?".
[[nodiscard]] std::string Narrow(const wchar_t* text);
/// The same for a text that must be a BSTR; appends " (not a BSTR)" if its stored length is not its
/// real one.
[[nodiscard]] std::string NarrowBstr(const wchar_t* text);

}  // namespace Standin::Firmware

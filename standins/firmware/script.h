#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// Part of the stand-in for the firmware's WMI objects: which call deviates, and which were made.
//
// Calls are named by operation and, where there is one, the name it is about:
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
  /// Forgets everything and takes the given words; returns those that mean nothing.
  std::vector<std::string> Reset(const std::string& words);

  /// The call's n-th occurrence, or each one, gives `result` at once and hands no object out: a
  /// failure, or a success with nothing.
  void Fail(const std::string& call, HRESULT result, int occurrence = kAlways);
  /// A call of the Get family gives this value; `make` gets an initialised variant.
  void Answer(const std::string& call, VariantMaker make, int occurrence = kAlways);
  /// Gets each call as it stands in the trace and, as "end of NAME", each object whose last
  /// reference was released; on the caller's thread, also after a Reset. An empty function ends
  /// that.
  void Listen(std::function<void(const std::string& call)> listener);
  /// Runs inside each call of this name, on the caller's thread, before it is answered.
  void During(const std::string& call, std::function<void()> action);

  bool Has(const std::string& word) const;
  /// All calls in order, as "name" or "name detail".
  std::vector<std::string> Trace() const;
  /// How many calls there were of this name.
  int Count(const std::string& call) const;

  /// For the objects: records a call and tells how it ends early, if it does.
  std::optional<HRESULT> Enter(const std::string& call, const std::string& detail = {});
  /// For the objects: tells the listener of the end of one.
  void End(const std::string& name);
  /// For the objects: the scripted value of a call that was just entered; null if there is none.
  VariantMaker FindAnswer(const std::string& call) const;

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
Script& TheScript();

/// Plain characters only; for names and details of the trace.
std::string Narrow(const wchar_t* text);
/// The same for a text that COM wants with its length before it; " (not a BSTR)" is added to one
/// without.
std::string NarrowBstr(const wchar_t* text);

}  // namespace Standin::Firmware

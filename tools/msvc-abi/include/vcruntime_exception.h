// std::exception and its first descendants, in the layout of MSVC's runtime.
#pragma once
#include <vcruntime.h>
#include <eh.h>
struct __std_exception_data {
  char const* _What;
  bool _DoFree;
};
extern "C" void __cdecl __std_exception_copy(__std_exception_data const*, __std_exception_data*);
extern "C" void __cdecl __std_exception_destroy(__std_exception_data*);
namespace std {
class exception {
 public:
  exception() noexcept : _Data() {}
  explicit exception(char const* const m) noexcept : _Data() {
    __std_exception_data d = {m, true};
    __std_exception_copy(&d, &_Data);
  }
  exception(char const* const m, int) noexcept : _Data() { _Data._What = m; }
  exception(exception const& o) noexcept : _Data() { __std_exception_copy(&o._Data, &_Data); }
  exception& operator=(exception const& o) noexcept {
    if (this != &o) {
      __std_exception_destroy(&_Data);
      __std_exception_copy(&o._Data, &_Data);
    }
    return *this;
  }
  virtual ~exception() noexcept { __std_exception_destroy(&_Data); }
  [[nodiscard]] virtual char const* what() const {
    return _Data._What ? _Data._What : "Unknown exception";
  }

 private:
  __std_exception_data _Data;
};
class bad_exception : public exception {
 public:
  bad_exception() noexcept : exception("bad exception", 1) {}
};
class bad_alloc : public exception {
 public:
  bad_alloc() noexcept : exception("bad allocation", 1) {}

 private:
  friend class bad_array_new_length;
  bad_alloc(char const* const m) noexcept : exception(m, 1) {}
};
class bad_array_new_length : public bad_alloc {
 public:
  bad_array_new_length() noexcept : bad_alloc("bad array new length") {}
};
}  // namespace std

// type_info, in the layout of MSVC's runtime, and the exceptions of casts.
#pragma once
#include <vcruntime.h>
#include <vcruntime_exception.h>
struct __std_type_info_data {
  const char* _UndecoratedName;
  const char _DecoratedName[1];
};
struct __type_info_node;
class type_info {
 public:
  type_info(const type_info&) = delete;
  type_info& operator=(const type_info&) = delete;
  size_t hash_code() const noexcept;
  bool operator==(const type_info&) const noexcept;
  bool before(const type_info&) const noexcept;
  const char* name() const noexcept;
  const char* raw_name() const noexcept;
  virtual ~type_info() noexcept;

 private:
  mutable __std_type_info_data _Data;
};
namespace std {
using ::type_info;
class bad_cast : public exception {
 public:
  bad_cast() noexcept : exception("bad cast", 1) {}
  static bad_cast __construct_from_string_literal(const char* const m) noexcept {
    return bad_cast(m, 1);
  }

 private:
  bad_cast(const char* const m, int) noexcept : exception(m, 1) {}
};
class bad_typeid : public exception {
 public:
  bad_typeid() noexcept : exception("bad typeid", 1) {}

 private:
  friend class __non_rtti_object;
  bad_typeid(const char* const m, int) noexcept : exception(m, 1) {}
};
class __non_rtti_object : public bad_typeid {
 public:
  static __non_rtti_object __construct_from_string_literal(const char* const m) noexcept {
    return __non_rtti_object(m, 1);
  }

 private:
  __non_rtti_object(const char* const m, int) noexcept : bad_typeid(m, 1) {}
};
}  // namespace std

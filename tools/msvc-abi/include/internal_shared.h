// What MSVC's standard library takes from sources of the C runtime, for compiling the library
// itself.
#pragma once
#include <vcruntime.h>
#include <windows.h>
#include <stdlib.h>
#include <string.h>
#define _malloc_crt malloc
#define _calloc_crt calloc
#define _free_crt free
template <class T>
struct __crt_unique_heap_ptr {
  T* p = nullptr;
  __crt_unique_heap_ptr() = default;
  explicit __crt_unique_heap_ptr(T* q) : p(q) {}
  ~__crt_unique_heap_ptr() { free(p); }
  __crt_unique_heap_ptr(__crt_unique_heap_ptr&& o) : p(o.p) { o.p = nullptr; }
  __crt_unique_heap_ptr& operator=(__crt_unique_heap_ptr&& o) {
    T* q = o.p;
    o.p = nullptr;
    free(p);
    p = q;
    return *this;
  }
  T* get() const { return p; }
  T* release() {
    T* q = p;
    p = nullptr;
    return q;
  }
  explicit operator bool() const { return p; }
  T** get_address_of() { return &p; }
};
#define _malloc_crt_t(T, n) (__crt_unique_heap_ptr<T>((T*)malloc((n) * sizeof(T))))

#pragma once

#include <windows.h>

#include <cstddef>
#include <tuple>

namespace Standin {

template <typename Method>
struct ParametersOf;
template <typename Interface, typename... Types>
struct ParametersOf<HRESULT (STDMETHODCALLTYPE Interface::*)(Types...)> {
  using Tuple = std::tuple<Types...>;
};

/// The type of a parameter of an interface's method, counted from 0. The Windows SDK declares types
/// for some that are numbers or plain objects in headers of our own.
template <auto kMethod, std::size_t kIndex = 0>
using Parameter = std::tuple_element_t<kIndex, typename ParametersOf<decltype(kMethod)>::Tuple>;

}  // namespace Standin

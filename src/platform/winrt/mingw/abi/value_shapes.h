#pragma once

#include <windows.h>

#include <hstring.h>
#include <inspectable.h>

// Boxed values: the interfaces of Windows.Foundation that the headers of this toolchain lack, as
// Windows documents them. Each operation is in the slot that it has in Windows, so that the order
// of the lines is the contract. All slots are declared, since tests implement these interfaces. The
// last parameter is the result. A result that is a text comes with a reference, which the caller
// owns.
namespace Zq::Gantry::Platform::WinRt {

/// In units of 100 ns, since 1601 in UTC.
struct DateTime {
  INT64 UniversalTime;
};

/// The types of values that are distinguished here; the values are fixed by Windows.
enum PropertyType : INT32 {
  PropertyType_Empty = 0,
  PropertyType_Int32 = 4,
  PropertyType_Double = 9,
  PropertyType_Boolean = 11,
  PropertyType_String = 12,
  PropertyType_OtherType = 20,
};

/// In units of 100 ns.
struct TimeSpan {
  INT64 Duration;
};

struct Point {
  FLOAT X;
  FLOAT Y;
};

struct Size {
  FLOAT Width;
  FLOAT Height;
};

struct Rect {
  FLOAT X;
  FLOAT Y;
  FLOAT Width;
  FLOAT Height;
};

/// A boxed value of any type. It also has the reference interface of its type; strings, numbers and
/// truth values are read through that one. The caller frees arrays (CoTaskMemFree).
struct IPropertyValue : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Type(PropertyType* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsNumericScalar(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt8(BYTE* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInt16(INT16* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt16(UINT16* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInt32(INT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt32(UINT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInt64(INT64* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt64(UINT64* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSingle(FLOAT* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDouble(DOUBLE* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetChar16(WCHAR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetBoolean(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetString(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetGuid(GUID* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDateTime(DateTime* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTimeSpan(TimeSpan* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetPoint(Point* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSize(Size* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRect(Rect* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt8Array(UINT32* count, BYTE** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInt16Array(UINT32* count, INT16** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt16Array(UINT32* count, UINT16** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInt32Array(UINT32* count, INT32** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt32Array(UINT32* count, UINT32** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInt64Array(UINT32* count, INT64** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUInt64Array(UINT32* count, UINT64** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSingleArray(UINT32* count, FLOAT** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDoubleArray(UINT32* count, DOUBLE** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetChar16Array(UINT32* count, WCHAR** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetBooleanArray(UINT32* count, boolean** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetStringArray(UINT32* count, HSTRING** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInspectableArray(UINT32* count, IInspectable*** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetGuidArray(UINT32* count, GUID** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDateTimeArray(UINT32* count, DateTime** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTimeSpanArray(UINT32* count, TimeSpan** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetPointArray(UINT32* count, Point** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSizeArray(UINT32* count, Size** values) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRectArray(UINT32* count, Rect** values) = 0;
};

/// IReference<String>.
struct IStringReference : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Value(HSTRING* value) = 0;
};

/// IReference<Double>.
struct IDoubleReference : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Value(DOUBLE* value) = 0;
};

/// IReference<Boolean>.
struct IBooleanReference : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Value(boolean* value) = 0;
};

}  // namespace Zq::Gantry::Platform::WinRt

// The macro must be used outside of any namespace. Windows derives the identifiers of the three
// references from that of the generic reference and the signature of the type.
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPropertyValue, 0x4bd682dd, 0x7554, 0x40e9, 0x9a, 0x9b,
                0x82, 0x65, 0x4e, 0xde, 0x7e, 0x62)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IStringReference, 0xfd416dfb, 0x2a07, 0x52eb, 0xaa,
                0xe3, 0xdf, 0xce, 0x14, 0x11, 0x6c, 0x05)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IDoubleReference, 0x2f2d6c29, 0x5473, 0x5f3e, 0x92,
                0xe7, 0x96, 0x57, 0x2b, 0xb9, 0x90, 0xe2)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IBooleanReference, 0x3c00fd60, 0x2950, 0x5939, 0xa2,
                0x1a, 0x2d, 0x12, 0xc5, 0xa0, 0x1b, 0x8a)

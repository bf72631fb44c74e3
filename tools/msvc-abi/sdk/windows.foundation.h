// Boxed values and collections, with the names and types of the Windows SDK. Only what this project
// uses is complete.
#pragma once
#include <windows.h>
#include <hstring.h>
#include <inspectable.h>
namespace ABI {
namespace Windows {
namespace Foundation {

struct DateTime {
  INT64 UniversalTime;
};

enum PropertyType : int {
  PropertyType_Empty = 0,
  PropertyType_Int32 = 4,
  PropertyType_Double = 9,
  PropertyType_Boolean = 11,
  PropertyType_String = 12,
  PropertyType_OtherType = 20,
};

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

/// A boxed value; it also offers the reference interface of its type. Arrays are the caller's to
/// free.
struct __declspec(uuid("4bd682dd-7554-40e9-9a9b-82654ede7e62")) __declspec(novtable) IPropertyValue
    : IInspectable {
 public:
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

template <class L, class A>
struct AggregateType {};
template <class T>
struct IReference_impl : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Value(T* value) = 0;
};
template <class T>
struct IReference;
template <>
struct __declspec(uuid("fd416dfb-2a07-52eb-aae3-dfce14116c05")) IReference<HSTRING>
    : IReference_impl<HSTRING> {};
template <>
struct __declspec(uuid("2f2d6c29-5473-5f3e-92e7-96572bb990e2")) IReference<double>
    : IReference_impl<double> {};
template <>
struct __declspec(uuid("3c00fd60-2950-5939-a21a-2d12c5a01b8a")) IReference<bool>
    : IReference_impl<boolean> {};
struct __declspec(uuid("9e365e57-48b2-4160-956f-c7385120bbfc")) __declspec(novtable)
    IUriRuntimeClass : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_AbsoluteUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DisplayUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Domain(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Extension(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Fragment(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Host(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Password(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Path(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Query(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_QueryParsed(IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RawUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SchemeName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UserName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Port(INT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Suspicious(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Equals(IUriRuntimeClass* uri, boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE CombineUri(HSTRING relativeUri, IUriRuntimeClass** value) = 0;
};

struct IAsyncAction;
template <class T>
struct IAsyncOperation;
template <class T, class P>
struct IAsyncOperationWithProgress;
class Uri;
struct IWwwFormUrlDecoderRuntimeClass;
namespace Collections {
template <class T>
struct IVectorView;
template <class T>
struct IVector;

template <class T>
struct IIterator_impl : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Current(T* v) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_HasCurrent(boolean* v) = 0;
  virtual HRESULT STDMETHODCALLTYPE MoveNext(boolean* v) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetMany(unsigned c, T* v, unsigned* a) = 0;
};
template <class T>
struct IIterator;
template <class T>
struct IIterable;
}  // namespace Collections
}  // namespace Foundation
}  // namespace Windows
}  // namespace ABI

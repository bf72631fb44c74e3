#pragma once

#include <windows.h>

#include "abi/value_shapes.h"
#include "abi/xml_shapes.h"
#include "parameter.h"

// Bases of fakes of XML documents, nodes and boxed values: the operations that the product does not
// call return E_NOTIMPL.
namespace TestSupport {

using namespace Zq::Gantry::Platform::WinRt;
using Standin::Parameter;

struct UnimplementedNode : IXmlNode, IXmlNodeSerializer, IXmlAttribute {
  STDMETHODIMP get_NodeValue(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP put_NodeValue(IInspectable*) override { return E_NOTIMPL; }
  STDMETHODIMP get_NodeType(NodeType*) override { return E_NOTIMPL; }
  STDMETHODIMP get_NodeName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_ParentNode(IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP get_ChildNodes(IXmlNodeList**) override { return E_NOTIMPL; }
  STDMETHODIMP get_FirstChild(IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP get_LastChild(IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP get_PreviousSibling(IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP get_NextSibling(IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP HasChildNodes(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_OwnerDocument(IXmlDocument**) override { return E_NOTIMPL; }
  STDMETHODIMP InsertBefore(IXmlNode*, IXmlNode*, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP ReplaceChild(IXmlNode*, IXmlNode*, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP RemoveChild(IXmlNode*, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP AppendChild(IXmlNode*, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP CloneNode(boolean, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP get_NamespaceUri(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP get_LocalName(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP get_Prefix(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP Normalize() override { return E_NOTIMPL; }
  STDMETHODIMP put_Prefix(IInspectable*) override { return E_NOTIMPL; }
  STDMETHODIMP GetXml(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP put_InnerText(HSTRING) override { return E_NOTIMPL; }
  STDMETHODIMP get_Name(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Specified(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP put_Value(HSTRING) override { return E_NOTIMPL; }
};

struct UnimplementedNodeMap : IXmlNamedNodeMap {
  STDMETHODIMP get_Length(UINT32*) override { return E_NOTIMPL; }
  STDMETHODIMP Item(UINT32, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP SetNamedItem(IXmlNode*, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP RemoveNamedItem(HSTRING, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP GetNamedItemNS(IInspectable*, HSTRING, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP RemoveNamedItemNS(IInspectable*, HSTRING, IXmlNode**) override { return E_NOTIMPL; }
  STDMETHODIMP SetNamedItemNS(IXmlNode*, IXmlNode**) override { return E_NOTIMPL; }
};

struct UnimplementedDocument : IXmlDocument {
  STDMETHODIMP get_Doctype(Parameter<&IXmlDocument::get_Doctype>) override { return E_NOTIMPL; }
  STDMETHODIMP get_Implementation(Parameter<&IXmlDocument::get_Implementation>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_DocumentElement(Parameter<&IXmlDocument::get_DocumentElement>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateElement(HSTRING, Parameter<&IXmlDocument::CreateElement, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateDocumentFragment(Parameter<&IXmlDocument::CreateDocumentFragment>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateTextNode(HSTRING, Parameter<&IXmlDocument::CreateTextNode, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateComment(HSTRING, Parameter<&IXmlDocument::CreateComment, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateProcessingInstruction(
      HSTRING, HSTRING, Parameter<&IXmlDocument::CreateProcessingInstruction, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateAttribute(HSTRING, IXmlAttribute**) override { return E_NOTIMPL; }
  STDMETHODIMP CreateEntityReference(HSTRING,
                                     Parameter<&IXmlDocument::CreateEntityReference, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetElementsByTagName(HSTRING, IXmlNodeList**) override { return E_NOTIMPL; }
  STDMETHODIMP CreateCDataSection(HSTRING,
                                  Parameter<&IXmlDocument::CreateCDataSection, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_DocumentUri(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP CreateAttributeNS(IInspectable*, HSTRING, IXmlAttribute**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateElementNS(IInspectable*, HSTRING,
                               Parameter<&IXmlDocument::CreateElementNS, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetElementById(HSTRING, Parameter<&IXmlDocument::GetElementById, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP ImportNode(IXmlNode*, boolean, IXmlNode**) override { return E_NOTIMPL; }
};

struct UnimplementedValue : IPropertyValue {
  STDMETHODIMP get_IsNumericScalar(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt8(BYTE*) override { return E_NOTIMPL; }
  STDMETHODIMP GetInt16(INT16*) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt16(UINT16*) override { return E_NOTIMPL; }
  STDMETHODIMP GetInt32(INT32*) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt32(UINT32*) override { return E_NOTIMPL; }
  STDMETHODIMP GetInt64(INT64*) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt64(UINT64*) override { return E_NOTIMPL; }
  STDMETHODIMP GetSingle(FLOAT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetDouble(DOUBLE*) override { return E_NOTIMPL; }
  STDMETHODIMP GetChar16(WCHAR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetBoolean(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP GetString(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP GetGuid(GUID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetDateTime(Parameter<&IPropertyValue::GetDateTime>) override { return E_NOTIMPL; }
  STDMETHODIMP GetTimeSpan(Parameter<&IPropertyValue::GetTimeSpan>) override { return E_NOTIMPL; }
  STDMETHODIMP GetPoint(Parameter<&IPropertyValue::GetPoint>) override { return E_NOTIMPL; }
  STDMETHODIMP GetSize(Parameter<&IPropertyValue::GetSize>) override { return E_NOTIMPL; }
  STDMETHODIMP GetRect(Parameter<&IPropertyValue::GetRect>) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt8Array(UINT32*, BYTE**) override { return E_NOTIMPL; }
  STDMETHODIMP GetInt16Array(UINT32*, INT16**) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt16Array(UINT32*, UINT16**) override { return E_NOTIMPL; }
  STDMETHODIMP GetInt32Array(UINT32*, INT32**) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt32Array(UINT32*, UINT32**) override { return E_NOTIMPL; }
  STDMETHODIMP GetInt64Array(UINT32*, INT64**) override { return E_NOTIMPL; }
  STDMETHODIMP GetUInt64Array(UINT32*, UINT64**) override { return E_NOTIMPL; }
  STDMETHODIMP GetSingleArray(UINT32*, FLOAT**) override { return E_NOTIMPL; }
  STDMETHODIMP GetDoubleArray(UINT32*, DOUBLE**) override { return E_NOTIMPL; }
  STDMETHODIMP GetChar16Array(UINT32*, WCHAR**) override { return E_NOTIMPL; }
  STDMETHODIMP GetBooleanArray(UINT32*, boolean**) override { return E_NOTIMPL; }
  STDMETHODIMP GetStringArray(UINT32*, HSTRING**) override { return E_NOTIMPL; }
  STDMETHODIMP GetInspectableArray(UINT32*, IInspectable***) override { return E_NOTIMPL; }
  STDMETHODIMP GetGuidArray(UINT32*, GUID**) override { return E_NOTIMPL; }
  STDMETHODIMP GetDateTimeArray(UINT32*, Parameter<&IPropertyValue::GetDateTimeArray, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetTimeSpanArray(UINT32*, Parameter<&IPropertyValue::GetTimeSpanArray, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetPointArray(UINT32*, Parameter<&IPropertyValue::GetPointArray, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetSizeArray(UINT32*, Parameter<&IPropertyValue::GetSizeArray, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetRectArray(UINT32*, Parameter<&IPropertyValue::GetRectArray, 1>) override {
    return E_NOTIMPL;
  }
};

}  // namespace TestSupport

#pragma once

#include <windows.h>

#include <winstring.h>

#include <atomic>
#include <string>
#include <utility>

#include "abi/value_shapes.h"
#include "abi/xml_shapes.h"

// A rule's node and a parameter's value as small objects of this program. A host with the Windows
// Runtime takes nodes from an XmlDocument and values from PropertyValue instead; the judges accept
// both.
namespace AccessClient {

using namespace Zq::Gantry::Platform::WinRt;

/// Counts references and offers the interfaces. The count begins at 0, so that the first
/// RuntimeReference to the object owns it.
template <typename First, typename... Others>
class RuntimeObject : public First, public Others... {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IInspectable) || iid == __uuidof(First)) {
      *object = static_cast<First*>(this);
    }
    ((iid == __uuidof(Others) ? void(*object = static_cast<Others*>(this)) : void()), ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetIids(ULONG*, IID**) override { return E_NOTIMPL; }
  STDMETHODIMP GetRuntimeClassName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTrustLevel(TrustLevel*) override { return E_NOTIMPL; }

 protected:
  virtual ~RuntimeObject() = default;

 private:
  std::atomic<ULONG> references_{0};
};

[[nodiscard]] inline HRESULT CopyText(const std::wstring& text, HSTRING* value) {
  return WindowsCreateString(text.data(), static_cast<UINT32>(text.size()), value);
}

/// A boxed string, which is enough for most rules.
class BoxedText final : public RuntimeObject<IStringReference> {
 public:
  explicit BoxedText(std::wstring text) : text_(std::move(text)) {}
  STDMETHODIMP get_Value(HSTRING* value) override { return CopyText(text_, value); }

 private:
  std::wstring text_;
};

/// A node that holds only text.
class TextNode final : public RuntimeObject<IXmlNode, IXmlNodeSerializer> {
 public:
  explicit TextNode(std::wstring text) : text_(std::move(text)) {}
  STDMETHODIMP get_InnerText(HSTRING* value) override { return CopyText(text_, value); }

  // No rule calls the other operations.
  STDMETHODIMP GetXml(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP put_InnerText(HSTRING) override { return E_NOTIMPL; }
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
  STDMETHODIMP get_Attributes(IXmlNamedNodeMap**) override { return E_NOTIMPL; }
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

 private:
  std::wstring text_;
};

}  // namespace AccessClient

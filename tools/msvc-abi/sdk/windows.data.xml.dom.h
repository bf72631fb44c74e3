// XML documents, with the names and types of the Windows SDK. Only what this project uses is
// complete.
#pragma once
#include <windows.h>
#include <hstring.h>
#include <inspectable.h>
#include <windows.foundation.h>
namespace ABI {
namespace Windows {
namespace Data {
namespace Xml {
namespace Dom {

struct IXmlAttribute;
struct IXmlCDataSection;
struct IXmlComment;
struct IXmlDocument;
struct IXmlDocumentFragment;
struct IXmlDocumentType;
struct IXmlDomImplementation;
struct IXmlElement;
struct IXmlEntityReference;
struct IXmlNamedNodeMap;
struct IXmlNodeList;
struct IXmlProcessingInstruction;
struct IXmlText;

enum NodeType : int {
  NodeType_Element = 1,
  NodeType_Attribute = 2,
  NodeType_Text = 3,
};

/// Elements, attributes and documents also offer IXmlNodeSerializer. Only elements have attributes.
struct __declspec(uuid("1c741d59-2122-47d5-a856-83f3d4214875")) __declspec(novtable) IXmlNode
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_NodeValue(IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_NodeValue(IInspectable* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NodeType(NodeType* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NodeName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ParentNode(IXmlNode** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ChildNodes(IXmlNodeList** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FirstChild(IXmlNode** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LastChild(IXmlNode** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PreviousSibling(IXmlNode** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NextSibling(IXmlNode** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Attributes(IXmlNamedNodeMap** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE HasChildNodes(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_OwnerDocument(IXmlDocument** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE InsertBefore(IXmlNode* child, IXmlNode* reference,
                                                 IXmlNode** inserted) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReplaceChild(IXmlNode* child, IXmlNode* reference,
                                                 IXmlNode** previous) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveChild(IXmlNode* child, IXmlNode** removed) = 0;
  virtual HRESULT STDMETHODCALLTYPE AppendChild(IXmlNode* child, IXmlNode** appended) = 0;
  virtual HRESULT STDMETHODCALLTYPE CloneNode(boolean deep, IXmlNode** clone) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NamespaceUri(IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LocalName(IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Prefix(IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Normalize() = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Prefix(IInspectable* value) = 0;
};

struct __declspec(uuid("8c60ad77-83a4-4ec1-9c54-7ba429e13da6")) __declspec(novtable) IXmlNodeList
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_Length(UINT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(UINT32 index, IXmlNode** node) = 0;
};

struct __declspec(uuid("5cc5b382-e6dd-4991-abef-06d8d2e7bd0c")) __declspec(novtable)
    IXmlNodeSerializer : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE GetXml(HSTRING* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_InnerText(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_InnerText(HSTRING value) = 0;
};

/// An absent name is a success with a null node.
struct __declspec(uuid("b3a69eb0-aab0-4b82-a6fa-b1453f7c021b")) __declspec(novtable)
    IXmlNamedNodeMap : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_Length(UINT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(UINT32 index, IXmlNode** node) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetNamedItem(HSTRING name, IXmlNode** node) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetNamedItem(IXmlNode* node, IXmlNode** previous) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveNamedItem(HSTRING name, IXmlNode** previous) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetNamedItemNS(IInspectable* space, HSTRING name,
                                                   IXmlNode** node) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveNamedItemNS(IInspectable* space, HSTRING name,
                                                      IXmlNode** previous) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetNamedItemNS(IXmlNode* node, IXmlNode** previous) = 0;
};

struct __declspec(uuid("ac144aa4-b4f1-4db6-b206-8a22c308db0a")) __declspec(novtable) IXmlAttribute
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_Name(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Specified(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Value(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Value(HSTRING value) = 0;
};

struct __declspec(uuid("f7f3a506-1e87-42d6-bcfb-b8c809fa5494")) __declspec(novtable) IXmlDocument
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_Doctype(IXmlDocumentType** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Implementation(IXmlDomImplementation** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DocumentElement(IXmlElement** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateElement(HSTRING name, IXmlElement** element) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateDocumentFragment(IXmlDocumentFragment** fragment) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateTextNode(HSTRING data, IXmlText** text) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateComment(HSTRING data, IXmlComment** comment) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateProcessingInstruction(
      HSTRING target, HSTRING data, IXmlProcessingInstruction** instruction) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateAttribute(HSTRING name, IXmlAttribute** attribute) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateEntityReference(HSTRING name,
                                                          IXmlEntityReference** reference) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetElementsByTagName(HSTRING name, IXmlNodeList** elements) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateCDataSection(HSTRING data,
                                                       IXmlCDataSection** section) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DocumentUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateAttributeNS(IInspectable* space, HSTRING name,
                                                      IXmlAttribute** attribute) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateElementNS(IInspectable* space, HSTRING name,
                                                    IXmlElement** element) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetElementById(HSTRING id, IXmlElement** element) = 0;
  virtual HRESULT STDMETHODCALLTYPE ImportNode(IXmlNode* node, boolean deep,
                                               IXmlNode** imported) = 0;
};

}  // namespace Dom
}  // namespace Xml
}  // namespace Data
}  // namespace Windows
}  // namespace ABI

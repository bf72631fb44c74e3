#pragma once

#include <windows.h>

#include <hstring.h>
#include <inspectable.h>

// The interfaces of XML nodes (Windows.Data.Xml.Dom), which the headers of this toolchain lack, as
// Windows documents them. Each operation is in the slot that it has in Windows, so that the order
// of the lines is the contract. All slots are declared, since tests implement these interfaces. The
// last parameter is the result. A result that is an object or a text comes with a reference, which
// the caller owns.
namespace Zq::Gantry::Platform::WinRt {

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

/// The kinds of nodes that are distinguished here; the values are fixed by Windows.
enum NodeType : INT32 {
  NodeType_Element = 1,
  NodeType_Attribute = 2,
  NodeType_Text = 3,
};

/// A node. Elements, attributes and documents also have IXmlNodeSerializer. Only elements have
/// attributes: for other nodes get_Attributes succeeds with null.
struct IXmlNode : IInspectable {
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

/// Nodes in the order of the document, by index from 0.
struct IXmlNodeList : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Length(UINT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(UINT32 index, IXmlNode** node) = 0;
};

/// A node as text: with its tags, or get_InnerText without them.
struct IXmlNodeSerializer : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE GetXml(HSTRING* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_InnerText(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_InnerText(HSTRING value) = 0;
};

/// The attributes of an element. For an absent name, a call succeeds with a null node.
struct IXmlNamedNodeMap : IInspectable {
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

/// One attribute.
struct IXmlAttribute : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Name(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Specified(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Value(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Value(HSTRING value) = 0;
};

/// A whole document; the class Windows.Data.Xml.Dom.XmlDocument.
struct IXmlDocument : IInspectable {
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

}  // namespace Zq::Gantry::Platform::WinRt

// The macro must be used outside of any namespace.
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IXmlNode, 0x1c741d59, 0x2122, 0x47d5, 0xa8, 0x56, 0x83,
                0xf3, 0xd4, 0x21, 0x48, 0x75)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IXmlNodeList, 0x8c60ad77, 0x83a4, 0x4ec1, 0x9c, 0x54,
                0x7b, 0xa4, 0x29, 0xe1, 0x3d, 0xa6)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IXmlNodeSerializer, 0x5cc5b382, 0xe6dd, 0x4991, 0xab,
                0xef, 0x06, 0xd8, 0xd2, 0xe7, 0xbd, 0x0c)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IXmlNamedNodeMap, 0xb3a69eb0, 0xaab0, 0x4b82, 0xa6,
                0xfa, 0xb1, 0x45, 0x3f, 0x7c, 0x02, 0x1b)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IXmlAttribute, 0xac144aa4, 0xb4f1, 0x4db6, 0xb2, 0x06,
                0x8a, 0x22, 0xc3, 0x08, 0xdb, 0x0a)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IXmlDocument, 0xf7f3a506, 0x1e87, 0x42d6, 0xbc, 0xfb,
                0xb8, 0xc8, 0x09, 0xfa, 0x54, 0x94)

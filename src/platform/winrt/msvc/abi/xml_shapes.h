#pragma once

#include <windows.h>

#include <windows.data.xml.dom.h>

// The interfaces of XML nodes as the Windows SDK declares them, under the names that the rest of
// the library uses.
namespace Zq::Gantry::Platform::WinRt {

using ABI::Windows::Data::Xml::Dom::IXmlAttribute;
using ABI::Windows::Data::Xml::Dom::IXmlDocument;
using ABI::Windows::Data::Xml::Dom::IXmlNamedNodeMap;
using ABI::Windows::Data::Xml::Dom::IXmlNode;
using ABI::Windows::Data::Xml::Dom::IXmlNodeList;
using ABI::Windows::Data::Xml::Dom::IXmlNodeSerializer;
using ABI::Windows::Data::Xml::Dom::NodeType;

}  // namespace Zq::Gantry::Platform::WinRt

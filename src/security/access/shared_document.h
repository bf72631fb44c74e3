#pragma once

#include "abi/xml_shapes.h"
#include "platform/win32/com_owners.h"

namespace Zq::Gantry::Security {

inline constexpr wchar_t kXmlDocumentClass[] = L"Windows.Data.Xml.Dom.XmlDocument";

/// A new empty document; empty where the class cannot be had, whatever the reason. On any thread,
/// with or without an apartment.
Platform::UniqueInterface<Platform::WinRt::IXmlDocument> TryMakeXmlDocument() noexcept;

/// The one document of the process, made when the library is loaded and released when it is
/// unloaded. It is there for those who share the library; nothing here uses it.
extern const Platform::UniqueInterface<Platform::WinRt::IXmlDocument> SharedXmlDocument;

}  // namespace Zq::Gantry::Security

#pragma once

#include "abi/xml_shapes.h"
#include "platform/win32/com_owners.h"

// An XML document that the library makes when it is loaded, as its contract requires. No code of
// the library uses it.
namespace Zq::Gantry::Security {

inline constexpr wchar_t kXmlDocumentClass[] = L"Windows.Data.Xml.Dom.XmlDocument";

/// A new empty document of the Windows Runtime; empty if it cannot be made for any reason. Nothing
/// is logged. On any thread, with or without an apartment.
[[nodiscard]] Platform::UniqueInterface<Platform::WinRt::IXmlDocument>
TryMakeXmlDocument() noexcept;

/// The one document of the process, made when the library is loaded and released when it is
/// unloaded. Empty if it could not be made.
extern const Platform::UniqueInterface<Platform::WinRt::IXmlDocument> SharedXmlDocument;

}  // namespace Zq::Gantry::Security

#include "security/access/shared_document.h"

#include "platform/winrt/activation.h"
#include "platform/winrt/calls.h"

namespace Zq::Gantry::Security {

using namespace Platform::WinRt;
using Platform::UniqueInterface;

UniqueInterface<IXmlDocument> TryMakeXmlDocument() noexcept try {
  const auto factory = FetchActivationFactory(kXmlDocumentClass);
  const auto object = FetchObject(*factory.get(), &IActivationFactory::ActivateInstance);
  return FetchInterface<IXmlDocument>(*object.get());
} catch (...) {
  // The library is loaded without the document.
  return {};
}

// Runs under the loader's lock: it waits for no thread, joins no apartment and throws nothing.
const UniqueInterface<IXmlDocument> SharedXmlDocument = TryMakeXmlDocument();

}  // namespace Zq::Gantry::Security

#include "security/access/fake_rules.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "platform/win32/com_owners.h"

namespace TestSupport {

HRESULT RuleCalls::ResultOf(const std::string& call) {
  made.push_back(call);
  const auto failure = failures.find(call);
  return failure == failures.end() ? S_OK : failure->second;
}

bool RuleCalls::ReturnsNull(const std::string& call) const {
  return std::find(returningNull.begin(), returningNull.end(), call) != returningNull.end();
}

namespace {

HRESULT HandOutText(RuleCalls& calls, const char* call, const std::wstring& text, HSTRING* value) {
  *value = nullptr;
  const HRESULT result = calls.ResultOf(call);
  if (FAILED(result)) return result;
  return WindowsCreateString(text.data(), static_cast<UINT32>(text.size()), value);
}

/// A reference that becomes the only one to the new object.
template <typename Reference, typename Object>
Reference Adopt(Object* object) {
  const Zq::Gantry::Platform::UniqueInterface<Object> creator(object);
  return Reference(object);
}

using Attribute = RuntimeObject<UnimplementedNode, IXmlNode, IXmlNodeSerializer, IXmlAttribute>;

class FakeAttribute final : public Attribute {
 public:
  FakeAttribute(RuleCalls& calls, std::wstring value) : calls_(calls), value_(std::move(value)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    const HRESULT result =
        iid == __uuidof(IXmlAttribute) ? calls_.ResultOf("as IXmlAttribute") : S_OK;
    if (iid == __uuidof(IXmlAttribute) && calls_.ReturnsNull("as IXmlAttribute")) return S_OK;
    return FAILED(result) ? result : Attribute::QueryInterface(iid, object);
  }
  STDMETHODIMP get_Value(HSTRING* value) override {
    return HandOutText(calls_, "Value", value_, value);
  }
  STDMETHODIMP get_InnerText(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Attributes(IXmlNamedNodeMap**) override { return E_NOTIMPL; }

 private:
  RuleCalls& calls_;
  std::wstring value_;
};

class FakeMap final : public RuntimeObject<UnimplementedNodeMap, IXmlNamedNodeMap> {
 public:
  FakeMap(RuleCalls& calls, std::map<std::wstring, std::wstring> attributes)
      : calls_(calls), attributes_(std::move(attributes)) {}

  STDMETHODIMP GetNamedItem(HSTRING name, IXmlNode** node) override {
    *node = nullptr;
    const std::wstring text = WindowsGetStringRawBuffer(name, nullptr);
    const HRESULT result =
        calls_.ResultOf(text == L"min" ? "GetNamedItem min" : "GetNamedItem max");
    const auto row = attributes_.find(text);
    if (FAILED(result) || row == attributes_.end()) return result;
    *node = new FakeAttribute(calls_, row->second);
    return S_OK;
  }

 private:
  RuleCalls& calls_;
  std::map<std::wstring, std::wstring> attributes_;
};

using Node = RuntimeObject<UnimplementedNode, IXmlNode, IXmlNodeSerializer>;

class FakeNode final : public Node {
 public:
  FakeNode(RuleCalls& calls, NodeContent content) : calls_(calls), content_(std::move(content)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    const HRESULT result =
        iid == __uuidof(IXmlNodeSerializer) ? calls_.ResultOf("as IXmlNodeSerializer") : S_OK;
    if (iid == __uuidof(IXmlNodeSerializer) && calls_.ReturnsNull("as IXmlNodeSerializer")) {
      return S_OK;
    }
    return FAILED(result) ? result : Node::QueryInterface(iid, object);
  }
  STDMETHODIMP get_InnerText(HSTRING* value) override {
    return HandOutText(calls_, "InnerText", content_.innerText, value);
  }
  STDMETHODIMP get_Attributes(IXmlNamedNodeMap** value) override {
    *value = nullptr;
    const HRESULT result = calls_.ResultOf("Attributes");
    if (FAILED(result) || !content_.hasAttributeMap) return result;
    *value = new FakeMap(calls_, content_.attributes);
    return S_OK;
  }
  STDMETHODIMP get_Value(HSTRING*) override { return E_NOTIMPL; }

 private:
  RuleCalls& calls_;
  NodeContent content_;
};

/// `Reference` is the interface of the type of the value.
template <typename Reference, PropertyType kType>
struct BoxOf : UnimplementedValue, Reference {
  static constexpr PropertyType kPropertyType = kType;
};

template <typename Reference, PropertyType kType, typename Value>
class FakeBox final : public RuntimeObject<BoxOf<Reference, kType>, IPropertyValue, Reference> {
 public:
  FakeBox(RuleCalls& calls, Value value) : calls_(calls), value_(std::move(value)) {}

  STDMETHODIMP get_Type(PropertyType* value) override {
    *value = kType;
    return calls_.ResultOf("Type");
  }
  template <typename Out>
  HRESULT Return(Out* value) {
    if constexpr (std::is_same_v<Out, HSTRING>) {
      return HandOutText(calls_, "Boxed", value_, value);
    } else {
      *value = static_cast<Out>(value_);
      return calls_.ResultOf("Boxed");
    }
  }
  using Out = std::conditional_t<std::is_same_v<Value, std::wstring>, HSTRING,
                                 std::conditional_t<std::is_same_v<Value, bool>, boolean, DOUBLE>>;
  STDMETHODIMP get_Value(Out* value) override { return Return(value); }

 private:
  RuleCalls& calls_;
  Value value_;
};

class FakeInt32 final : public RuntimeObject<UnimplementedValue, IPropertyValue> {
 public:
  explicit FakeInt32(RuleCalls& calls) : calls_(calls) {}
  STDMETHODIMP get_Type(PropertyType* value) override {
    *value = static_cast<PropertyType>(4);
    return calls_.ResultOf("Type");
  }

 private:
  RuleCalls& calls_;
};

template <typename Reference, PropertyType kType, typename Value>
ValueReference MakeBox(RuleCalls& calls, Value value) {
  IPropertyValue* box = new FakeBox<Reference, kType, Value>(calls, std::move(value));
  return Adopt<ValueReference>(static_cast<IInspectable*>(box));
}

class NoText final : public RuntimeObject<UnimplementedNode, IXmlNode> {
 public:
  STDMETHODIMP get_InnerText(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Attributes(IXmlNamedNodeMap**) override { return E_NOTIMPL; }
  STDMETHODIMP get_Value(HSTRING*) override { return E_NOTIMPL; }
};

}  // namespace

XmlNodeReference MakeNode(RuleCalls& calls, NodeContent content) {
  return Adopt<XmlNodeReference>(static_cast<IXmlNode*>(new FakeNode(calls, std::move(content))));
}

XmlNodeReference MakeNodeWithoutText(RuleCalls&) {
  return Adopt<XmlNodeReference>(static_cast<IXmlNode*>(new NoText));
}

ValueReference Box(RuleCalls& calls, const std::wstring& text) {
  return MakeBox<IStringReference, PropertyType_String>(calls, text);
}

ValueReference Box(RuleCalls& calls, const wchar_t* text) { return Box(calls, std::wstring(text)); }

ValueReference Box(RuleCalls& calls, double number) {
  return MakeBox<IDoubleReference, PropertyType_Double>(calls, number);
}

ValueReference Box(RuleCalls& calls, bool truth) {
  return MakeBox<IBooleanReference, PropertyType_Boolean>(calls, truth);
}

ValueReference BoxInt32(RuleCalls& calls) {
  return Adopt<ValueReference>(
      static_cast<IInspectable*>(static_cast<IPropertyValue*>(new FakeInt32(calls))));
}

ValueReference MakePlainObject(RuleCalls&) {
  return Adopt<ValueReference>(static_cast<IInspectable*>(static_cast<IXmlNode*>(new NoText)));
}

}  // namespace TestSupport

// The display forms of a property: for now the plain value texts, NULL shown empty.
#include "TCIMPropertyImpl.h"

// The elements' texts of an array, the one text of a scalar, nothing for NULL.
static std::vector<std::string> Texts(TCIMValue value) {
  std::vector<std::string> texts;
  if (value.IsNull())
    return texts;
  if (!value.IsArray()) {
    texts.push_back(value.ToString(10));
    return texts;
  }
  std::vector<TCIMValue>& elements = value;
  for (std::vector<TCIMValue>::const_iterator it = elements.begin(); it != elements.end(); ++it)
    texts.push_back(it->ToString(10));
  return texts;
}

static std::string Text(const TCIMValue& value) {
  return value.IsNull() ? std::string() : value.ToString(10);
}

std::string TCIMPropertyImpl::ToString() const { return Text(GetValue()); }
std::vector<std::string> TCIMPropertyImpl::ToStringVector() const { return Texts(GetValue()); }
std::string TCIMPropertyImpl::PrevToString() const { return Text(GetPrevValue()); }
std::vector<std::string> TCIMPropertyImpl::PrevToStringVector() const {
  return Texts(GetPrevValue());
}

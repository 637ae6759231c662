#include "runtime/core/language/string_builder.h"

namespace kes {

KesStringBuilder& KesStringBuilder::Initialize() {
  wrap(platform::makeShared<MutableText>());
  return *this;
}

std::string& KesStringBuilder::utf8() const {
  return static_cast<MutableText*>(object().object())->utf8;
}

KesStringBuilder& KesStringBuilder::Append(std::string_view text) {
  std::string& mine = utf8();
  const auto byte = [](std::string_view s, std::size_t i) {
    return static_cast<unsigned char>(s[i]);
  };
  const std::size_t n = mine.size();
  const bool joins = n >= 3 && text.size() >= 3 && byte(mine, n - 3) == 0xED &&
                     byte(mine, n - 2) >= 0xA0 && byte(text, 0) == 0xED && byte(text, 1) >= 0xB0;
  if (joins) {
    // A half of a surrogate pair may have found its other half.
    const Text half(std::string_view(mine).substr(n - 3));
    mine.resize(n - 3);
    mine += (half + Text(text)).view();
  } else {
    mine += text;
  }
  return *this;
}

KesStringBuilder& KesStringBuilder::Insert(std::int32_t offset, std::string_view text) {
  const Text whole = ToString();
  utf8() = (whole.SubString2(0, offset) + Text(text) + whole.SubString(offset)).str();
  return *this;
}

KesStringBuilder& KesStringBuilder::Remove(std::int32_t begin, std::int32_t end) {
  const Text whole = ToString();
  whole.SubString2(begin, end);  // fails where the range does
  utf8() = (whole.SubString2(0, begin) + whole.SubString(end)).str();
  return *this;
}

Text KesStringBuilder::ToString() const { return Text(utf8()); }

std::int32_t KesStringBuilder::Length() const {
  return static_cast<std::int32_t>(detail::countUnits(utf8()));
}

Text KesStringBuilder::description() const {
  return IsInitialized() ? ToString() : KesObjectWrapper::description();
}

}  // namespace kes

// The items of a list, an array or any other range of values, each as it prints itself.
#pragma once

#include <string>
#include <vector>

#include "runtime/core/value.h"

namespace testing_support {

template <class Items>
std::vector<std::string> textsOf(const Items& items) {
  std::vector<std::string> texts;
  for (const kes::Value& v : items) texts.push_back(v.description().str());
  return texts;
}

}  // namespace testing_support

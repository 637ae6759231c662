// The one exception of the runtime: a name, often empty, and the text that the
// application reads through LastException. Thrown by value, on any thread.
#pragma once

#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>

#include "runtime/core/text.h"

namespace kes {

class KesException : public std::exception {
 public:
  explicit KesException(Text reason) : KesException("", std::move(reason)) {}
  KesException(Text name, Text reason)
      : name_(std::move(name)), reason_(std::move(reason)), what_(reason_.str()) {}

  const Text& name() const noexcept { return name_; }
  const Text& reason() const noexcept { return reason_; }
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  Text name_;
  Text reason_;
  std::string what_;
};

// "%@" once for each piece, in order: how the message texts of the runtime are filled.
Text formatText(std::string_view format, std::initializer_list<std::string_view> pieces);

}  // namespace kes

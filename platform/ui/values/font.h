// A font: one of the three system faces or a family by name ("FontAwesome",
// "Material Icons"), and a size in points. A small value; family names are kept once
// for the life of the process. Main thread. Nothing here throws.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ui {

class Font {
 public:
  enum class Face : std::uint8_t { System, SystemBold, SystemItalic, Named };

  Font() = default;  // the system face in 17 points
  static Font system(double size) { return Font(Face::System, nullptr, size); }
  static Font bold(double size) { return Font(Face::SystemBold, nullptr, size); }
  static Font italic(double size) { return Font(Face::SystemItalic, nullptr, size); }
  static Font named(std::string_view family, double size);

  Face face() const { return face_; }
  // Empty for the system faces.
  std::string_view family() const { return family_ ? std::string_view(*family_) : ""; }
  double size() const { return size_; }
  Font withSize(double size) const { return Font(face_, family_, size); }
  bool operator==(const Font&) const = default;

 private:
  Font(Face face, const std::string* family, double size)
      : family_(family), size_(size), face_(face) {}

  const std::string* family_ = nullptr;
  double size_ = 17;
  Face face_ = Face::System;
};

}  // namespace ui

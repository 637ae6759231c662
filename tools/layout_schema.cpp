#include "tools/layout_schema.h"

#include <algorithm>

namespace layouts {

namespace {

constexpr std::string_view kAlignments[] = {"left", "center", "right", "justified"};
constexpr std::string_view kContentModes[] = {
    "fill", "fit",   "cover",   "redraw",   "center",     "top",        "bottom",
    "left", "right", "topLeft", "topRight", "bottomLeft", "bottomRight"};
constexpr std::string_view kBorderStyles[] = {"none", "line", "bezel", "rounded"};
constexpr std::string_view kReturnKeys[] = {"default", "go",     "google", "join",  "next",
                                            "route",   "search", "send",   "yahoo", "done"};
constexpr std::string_view kKeyboards[] = {"default", "ascii", "punctuation", "url",    "number",
                                           "phone",   "name",  "email",       "decimal"};

using Properties = std::vector<Property>;

Properties joined(Properties own, const Properties& more) {
  own.insert(own.end(), more.begin(), more.end());
  return own;
}

const Properties kView = {
    {"tag", Kind::Text},           {"backgroundColor", Kind::Color, "keep"},
    {"alpha", Kind::Float, "1.0"}, {"visible", Kind::Boolean, "yes"},
    {"borderWidth", Kind::Float},  {"borderColor", Kind::Color},
    {"cornerRadius", Kind::Float},
};
const Properties kText = {
    {"text", Kind::Text},
    {"font", Kind::Font, "system 17"},
    {"textColor", Kind::Color, "keep"},
};
const Properties kAligned = {
    {"textAlignment", Kind::Word, {}, kAlignments},
};
const Properties kLabel = joined(joined(kText, kAligned), {{"multiline", Kind::Boolean},
                                                           {"adjustFontSizeToFit", Kind::Boolean}});
const Properties kEnabled = {{"enabled", Kind::Boolean, "yes"}};
const Properties kTraits = {
    {"autocorrection", Kind::Integer},     {"autocapitalization", Kind::Integer, "2"},
    {"spellcheck", Kind::Integer},         {"keyboardType", Kind::Word, {}, kKeyboards},
    {"keyboardAppearance", Kind::Integer}, {"returnKey", Kind::Word, {}, kReturnKeys},
    {"passwordMode", Kind::Boolean},
};
const Properties kRange = {
    {"minimumValue", Kind::Float},
    {"maximumValue", Kind::Float, "1.0"},
};

const std::vector<ViewType>& types() {
  static const std::vector<ViewType> all = {
      {"view", "KesViewWrapper", true, kView},
      {"panel", "KesPanelWrapper", true,
       joined({{"verticalParallax", Kind::Integer}, {"horizontalParallax", Kind::Integer}}, kView)},
      {"label", "KesLabelWrapper", false, joined(kLabel, kView)},
      {"button", "KesButtonWrapper", false,
       joined(joined(joined({{"style", Kind::Integer},
                             {"tintColor", Kind::Color, "keep"},
                             {"pressedTextColor", Kind::Color, "keep"},
                             {"backgroundImage", Kind::Text},
                             {"pressedBackgroundImage", Kind::Text}},
                            kText),
                     kEnabled),
              kView)},
      {"textfield", "KesTextFieldWrapper", false,
       joined(joined(joined(joined(joined({{"hintText", Kind::Text},
                                           {"adjustFontSizeToFit", Kind::Boolean},
                                           {"borderStyle", Kind::Word, "rounded", kBorderStyles},
                                           {"showClearButton", Kind::Boolean}},
                                          kText),
                                   kAligned),
                            kTraits),
                     kEnabled),
              kView)},
      {"textview", "KesTextViewWrapper", false,
       joined(
           joined(joined(joined({{"editable", Kind::Boolean, "yes"}}, kText), kAligned), kTraits),
           kView)},
      {"image", "KesImageViewWrapper", false,
       joined({{"imageFile", Kind::Text}, {"contentMode", Kind::Word, {}, kContentModes}}, kView)},
      {"scroll", "KesScrollView", false,
       joined({{"contentWidth", Kind::Float},
               {"contentHeight", Kind::Float},
               {"pagingEnabled", Kind::Boolean},
               {"bounces", Kind::Boolean, "yes"},
               {"showsVerticalIndicator", Kind::Boolean, "yes"},
               {"showsHorizontalIndicator", Kind::Boolean, "yes"}},
              kView)},
      {"web", "KesWebViewWrapper", false, joined({{"scaleToFit", Kind::Boolean}}, kView)},
      {"switch", "KesSwitchWrapper", false,
       joined(joined({{"value", Kind::Boolean},
                      {"onColor", Kind::Color, "keep"},
                      {"offColor", Kind::Color, "keep"},
                      {"thumbColor", Kind::Color, "keep"}},
                     kEnabled),
              kView)},
      {"slider", "KesSliderWrapper", false,
       joined(joined(joined(kRange, {{"value", Kind::Float},
                                     {"minimumTrackTintColor", Kind::Color, "keep"},
                                     {"continuous", Kind::Boolean, "yes"}}),
                     kEnabled),
              kView)},
      {"stepper", "KesStepperWrapper", false,
       joined(joined(joined(kRange, {{"stepValue", Kind::Float, "1.0"},
                                     {"tintColor", Kind::Color, "keep"}}),
                     kEnabled),
              kView)},
      {"segments", "KesSegmentedControlWrapper", false,
       joined(joined({{"items", Kind::Text},
                      {"tintColor", Kind::Color, "keep"},
                      {"momentary", Kind::Boolean}},
                     kEnabled),
              kView)},
      {"datepicker", "KesDatePickerWrapper", false,
       joined(joined({{"mode", Kind::Integer}, {"minuteInterval", Kind::Integer, "1"}}, kEnabled),
              kView)},
      {"picker", "KesPickerWrapper", false, kView},
      {"progress", "KesProgressWrapper", false,
       joined({{"progressColor", Kind::Color, "keep"}}, kView)},
      {"activity", "KesActivityIndicatorWrapper", false,
       joined({{"style", Kind::Integer}, {"color", Kind::Color, "keep"}}, kView)},
      {"custom", "KesCustomViewWrapper", false,
       joined(joined({{"customType", Kind::Text}, {"customProperties", Kind::Free}}, kLabel),
              kView)},
  };
  return all;
}

}  // namespace

const ViewType* typeByWord(std::string_view word) {
  for (const auto& t : types())
    if (t.word == word) return &t;
  return nullptr;
}

const ViewType* typeByClass(std::string_view className) {
  for (const auto& t : types())
    if (t.className == className) return &t;
  return nullptr;
}

const std::vector<Property>& rootProperties() {
  static const Properties all = {
      {"backgroundColor", Kind::Color, "#FFFFFFFF"},
      {"title", Kind::Text},
      {"prompt", Kind::Text},
      {"hideBackButton", Kind::Boolean},
      {"navigationBarVisible", Kind::Boolean, "yes"},
      {"navigationToolbarVisible", Kind::Boolean},
      {"handleResizeEvent", Kind::Boolean},
      {"dumpingRatio", Kind::Float, "1.0"},
      {"duration", Kind::Integer},
  };
  return all;
}

const std::vector<Property>& barButtonProperties() {
  static const Properties all = {
      {"btype", Kind::Integer},
      {"text", Kind::Text},
      {"image", Kind::Text},
      {"font", Kind::Font, "system 16"},
      {"enabled", Kind::Boolean, "yes"},
      {"tintColor", Kind::Color, "keep"},
      {"tag", Kind::Text},
  };
  return all;
}

bool isBarButton(std::string_view key) {
  for (const std::string_view bar : {"topRight", "toolbar"})
    if (key.size() == bar.size() + 1 && key.starts_with(bar))
      return key.back() >= '0' && key.back() <= '4';
  return false;
}

const Property* findProperty(const std::vector<Property>& properties, std::string_view key) {
  const auto found = std::find_if(properties.begin(), properties.end(),
                                  [&](const Property& p) { return p.key == key; });
  return found == properties.end() ? nullptr : &*found;
}

std::string allTypeWords() {
  std::string words;
  for (const auto& t : types()) {
    if (!words.empty()) words += ", ";
    words += t.word;
  }
  return words;
}

}  // namespace layouts

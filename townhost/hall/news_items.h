// What the news of Varlo say. Dates are placeholders of italian_dates.h. Constant
// tables; any thread.
#pragma once

#include <span>
#include <string_view>

#include "townhost/pictures/scene.h"

namespace town {

struct NewsItem {
  std::string_view title, brief;
  std::string_view picture;  // a file name
  Scene::Subject scene = Scene::Subject::Square;
  bool evening = false;
  std::string_view html;
};

std::span<const NewsItem> newsItems();

}  // namespace town
